// The parts that every channel has: texts, faults, and the factory.
#include "tests/host/Device.h"

using namespace host;

namespace {

std::string FaultError(const std::string& text) {
  std::string error;
  CHECK_FALSE(ParseFault(text, error));
  return error;
}

std::unique_ptr<Channel> MakeFaulty(const std::vector<std::string>& texts) {
  ChannelOptions options;
  for (const std::string& text : texts) {
    std::string error;
    const auto fault = ParseFault(text, error);
    REQUIRE_MESSAGE(fault, error);
    options.faults.push_back(*fault);
  }
  return MakeDevice(options);
}

} // namespace

TEST_CASE("channel: every text that can be asked for") {
  const auto device = MakeDevice();
  CHECK(device->GetState() == 1);
  const struct {
    std::uint32_t what;
    std::int64_t code;
    const char* text;
  } cases[] = {
      {OND_INFO_DESCRIPTION, 0, "Simulated device"},
      {OND_INFO_CONFIGURATION, 0, "8192 blocks of 512 bytes"},
      {OND_INFO_ERROR, 0, "No error"},
      {OND_INFO_ERROR, kNoSuchFile, "No such file"},
      {OND_INFO_ERROR, kDeviceFull, "Device full"},
      {OND_INFO_ERROR, kTransferAborted, "Transfer aborted"},
      {OND_INFO_ERROR, kLocalFileUnreadable, "Local file cannot be read"},
      {OND_INFO_ERROR, 4711, "Error 4711"},
      {OND_INFO_ERROR, -9223372036854775807 - 1, "Error -9223372036854775808"},
      {3, 0, ""},
  };
  for (const auto& each : cases) {
    CAPTURE(each.what);
    CAPTURE(each.code);
    CHECK(std::string(device->GetInfoString(each.what, each.code)) == each.text);
  }
}

TEST_CASE("channel: null pointers are answered") {
  const auto device = MakeDevice();
  std::uint64_t count = 1;
  char byte = 0;
  CHECK(device->Receive(&byte, 1, nullptr) == kInvalidArgument);
  CHECK(device->Receive(nullptr, 1, &count) == kInvalidArgument);
  CHECK(device->Receive(nullptr, 0, &count) == kChannelOk);
  CHECK(count == 0);
  CHECK(device->Transmit(nullptr, 1, &count) == kInvalidArgument);
  CHECK(device->Transmit("id\n", 3, nullptr) == kChannelOk);
  CHECK(device->TransmitFileFromMemory(nullptr, 1, 1, 1, 0, nullptr, nullptr, 1, 40) == kInvalidArgument);
  CHECK(device->TransmitFileFromMemory(nullptr, 0, 1, 1, 0, nullptr, nullptr, 1, 40) == kChannelOk);
  CHECK(device->GetDirectoryInfo(nullptr) == kInvalidArgument);
}

TEST_CASE("factory: channels that are not there are named") {
  for (const char* text : {"", "simulated", "SIM", "sim:4"}) {
    CAPTURE(text);
    ChannelOptions options;
    options.text = text;
    const ChannelResult result = MakeChannel(options);
    CHECK_FALSE(result.channel);
    CHECK(result.badText);
    CHECK_FALSE(result.error.empty());
  }
}

TEST_CASE("faults: what cannot be understood is explained") {
  CHECK(FaultError("Receive").find("expected OPERATION[:N]=CODE") == 0);
  CHECK(FaultError("Recieve=1").find("unknown operation \"Recieve\"; there are Lock, Unlock, ") == 0);
  CHECK(FaultError("=1").find("unknown operation \"\"") == 0);
  for (const char* call : {"0", "", "-1", "x", "1 "})
    CHECK(FaultError(std::string("Receive:") + call + "=1").find("is not the number of a call") != std::string::npos);
  for (const char* code : {"", "x", "2147483648", "1;"})
    CHECK(FaultError(std::string("Receive=") + code).find("is not a code") != std::string::npos);
}

TEST_CASE("faults: one call, or all of them") {
  const auto device = MakeFaulty({"transmit:2=-5", "RECEIVE=77", "Transmit:3=6"});
  std::uint64_t written = 0;
  CHECK(device->Transmit("led on\n", 7, &written) == 0);
  CHECK(device->Transmit("led off\n", 8, &written) == -5);
  CHECK(written == 0);
  CHECK(device->Transmit("led off\n", 8, &written) == 6);
  CHECK(device->Transmit("led off\n", 8, &written) == 0);
  char buffer[8];
  std::uint64_t received = 5;
  CHECK(device->Receive(buffer, sizeof buffer, &received) == 77);
  CHECK(received == 0);
  CHECK(device->Receive(buffer, sizeof buffer, &received) == 77);
  CHECK(std::string(device->GetInfoString(OND_INFO_ERROR, 77)) == "Error 77");
}

TEST_CASE("faults: every operation can fail, and the device is then not reached") {
  const auto device = MakeFaulty({"Lock:2=1", "Unlock=3", "GetState=2", "TransmitFileFromMemory:2=6", "TransmitFile=8",
                                  "ReadDirectory:2=9", "GetDirectoryEntry=10", "GetDirectoryInfo=11",
                                  "DeleteDeviceFile=12", "FormatDevice=13"});
  int owner = 0;
  int other = 0;
  CHECK(device->Lock(&owner, 0) == 0);
  CHECK(device->Lock(&owner, 0) == 1);
  CHECK(device->Unlock(&owner) == 3);
  CHECK(device->Lock(&other, 0) == 0); // given back all the same
  CHECK(device->GetState() == 2);
  CHECK(Send(*device, "a", 1, 1) == 0);
  CHECK(Send(*device, "b", 2, 1) == 6);
  CHECK(device->TransmitFile("x", 3, 1, 0, nullptr, nullptr, 1, 40) == 8);
  CHECK(device->DeleteDeviceFile(1) == 12);
  CHECK(device->FormatDevice(0) == 13);
  CHECK(device->ReadDirectory() == 0);
  CHECK(device->GetDirectoryEntryCount() == 1);
  TDEVDIRENTRY entry{};
  TDEVDIRINFO info{};
  CHECK(device->GetDirectoryEntry(0, &entry) == 10);
  CHECK(device->GetDirectoryInfo(&info) == 11);
  CHECK(device->ReadDirectory() == 9);
}
