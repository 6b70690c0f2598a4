// The parts that every channel has: texts, faults, and the factory.
#include "tests/host/Device.h"

using namespace host;

namespace {

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
