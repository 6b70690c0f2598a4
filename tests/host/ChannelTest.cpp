#include "tests/host/Device.h"

using namespace host;

TEST_CASE("faults: every operation can fail, and the device is then not reached") {
  ChannelOptions options;
  for (const char* text : {"Lock:2=1", "Unlock=3", "GetState=2", "transmit:2=-5", "Transmit:3=6", "RECEIVE=77",
                           "TransmitFileFromMemory:2=6", "TransmitFile=8", "ReadDirectory:2=9", "GetDirectoryEntry=10",
                           "GetDirectoryInfo=11", "DeleteDeviceFile=12", "FormatDevice=13"}) {
    const auto fault = ParseFault(text);
    REQUIRE_MESSAGE(fault, fault.error());
    options.faults.push_back(*fault);
  }
  const auto device = MakeDevice(options);
  int owner = 0;
  int other = 0;
  CHECK(device->Lock(&owner, 0) == 0);
  CHECK(device->Lock(&owner, 0) == 1);
  CHECK(device->Unlock(&owner) == 3);
  CHECK(device->Lock(&other, 0) == 0); // given back all the same
  CHECK(device->GetState() == 2);

  std::uint64_t count = 5;
  for (const std::int32_t code : {0, -5, 6, 0})
    CHECK(device->Transmit("led on\n", 7, &count) == code);
  char buffer[8];
  for (int call = 0; call < 2; ++call)
    CHECK(device->Receive(buffer, sizeof buffer, &count) == 77);
  CHECK(count == 0);
  CHECK(std::string(device->GetInfoString(OND_INFO_ERROR, 77)) == "Error 77");

  CHECK(Send(*device, "a", 1, 1) == 0);
  CHECK(Send(*device, "b", 2, 1) == 6);
  CHECK(device->TransmitFile("x", 3, 1, 0, nullptr, nullptr, 1, 40) == 8);
  CHECK(device->DeleteDeviceFile(1) == 12);
  CHECK(device->FormatDevice(0) == 13);
  CHECK(device->ReadDirectory() == 0);
  CHECK(device->GetDirectoryEntryCount() == 1);
  TDEVDIRENTRY entry{};
  CHECK(device->GetDirectoryEntry(0, &entry) == 10);
  TDEVDIRINFO info{};
  CHECK(device->GetDirectoryInfo(&info) == 11);
  CHECK(device->ReadDirectory() == 9);
}

TEST_CASE("the contract's arguments are checked before the device is reached") {
  const auto device = MakeDevice();
  std::uint64_t count = 5;
  char byte = 0;
  CHECK(device->Lock(nullptr, 0) == kInvalidArgument);
  CHECK(device->Unlock(nullptr) == kNotLocked);
  CHECK(device->Receive(nullptr, 1, &count) == kInvalidArgument);
  CHECK(device->Receive(&byte, 1, nullptr) == kInvalidArgument);
  CHECK(device->Receive(nullptr, 0, &count) == kChannelOk);
  CHECK(count == 0);
  CHECK(device->Transmit(nullptr, 1, &count) == kInvalidArgument);
  CHECK(device->Transmit(nullptr, 0, nullptr) == kChannelOk);
  CHECK(device->TransmitFileFromMemory(nullptr, 1, 1, 1, 0, nullptr, nullptr, 1, 40) == kInvalidArgument);
  CHECK(device->TransmitFileFromMemory(nullptr, 0, 1, 1, 0, nullptr, nullptr, 1, 40) == kChannelOk);
  CHECK(device->TransmitFile(nullptr, 1, 1, 0, nullptr, nullptr, 1, 40) == kInvalidArgument);
  CHECK(device->GetDirectoryInfo(nullptr) == kInvalidArgument);
  CHECK(device->GetState() == 1);
  CHECK(device->Transmit("temp\n", 5, &count) == kChannelOk);
  CHECK(count == 5);
}

TEST_CASE("texts are found by what is asked for") {
  ChannelOptions options;
  options.sim.blocks = 4;
  options.sim.blockTime = std::chrono::milliseconds(1);
  const auto device = MakeDevice(options);
  const auto text = [&](std::uint32_t what, std::int64_t code) {
    return std::string(device->GetInfoString(what, code));
  };
  CHECK(text(OND_INFO_DESCRIPTION, 0) == "Simulated device");
  CHECK(text(OND_INFO_CONFIGURATION, 0) == "4 blocks of 512 bytes, 1 ms each");
  CHECK(text(OND_INFO_ERROR, kNoSuchFile) == "No such file");
  CHECK(text(OND_INFO_ERROR, -1) == "Error -1");
  CHECK(text(77, 0) == "");
}
