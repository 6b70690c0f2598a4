// A device that is there and nothing else; benchmarks let it do what they measure.
#pragma once

#include "frame/contract/OndDeviceClient.h"

class IdleChannel : public COndDeviceComm_0 {
public:
  const char* GetInfoString(std::uint32_t, std::int64_t) override { return "idle"; }
  std::int32_t Lock(void*, std::uint32_t) override { return 0; }
  std::int32_t Unlock(void*) override { return 0; }
  std::uint32_t GetState() override { return 1; }
  std::int32_t Receive(char*, std::uint32_t, std::uint64_t*) override { return 1; }
  std::int32_t Transmit(const char*, std::uint64_t, std::uint64_t*) override { return 1; }
  std::int32_t TransmitFileFromMemory(const char*, std::uint64_t, std::uint8_t, std::uint8_t, std::uint32_t,
                                      TransferProgressCallback, void*, std::uint32_t, std::uint32_t) override {
    return 1;
  }
  std::int32_t TransmitFile(const char*, std::uint8_t, std::uint8_t, std::uint32_t, TransferProgressCallback, void*,
                            std::uint32_t, std::uint32_t) override {
    return 1;
  }
  std::int32_t ReadDirectory() override { return 0; }
  std::uint64_t GetDirectoryEntryCount() override { return 0; }
  std::int32_t GetDirectoryEntry(std::uint32_t, TDEVDIRENTRY*) override { return 1; }
  std::int32_t GetDirectoryInfo(TDEVDIRINFO*) override { return 1; }
  std::int32_t DeleteDeviceFile(std::uint8_t) override { return 1; }
  std::int32_t FormatDevice(std::uint32_t) override { return 1; }
};
