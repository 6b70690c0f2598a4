// The input is a device file, and behind a zero byte what is sent to the device.
#include "fuzz/Expect.h"
#include "host/channel/sim/FileStore.h"
#include "host/channel/sim/description/DescribedConsole.h"
#include "host/channel/sim/description/DeviceReader.h"

// A mistake has a place in the file; a device takes whatever is sent, says no more than it keeps, and the same again.
extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size) {
  const std::string_view input(data, size);
  const std::string_view text = input.substr(0, input.find('\0'));
  const std::string_view sent = input.substr(std::min(text.size() + 1, size));
  const auto device = host::ParseDevice(text);
  if (!device) {
    for (const host::Mistake& mistake : device.error())
      Expect(mistake.line > 0 && mistake.column > 0 && mistake.column <= size + 1 && !mistake.text.empty(), "a place");
    return 0;
  }
  const host::FileStore files(1, {});
  std::string heard[2];
  for (std::string& each : heard) {
    host::Console::Time now{};
    host::DescribedConsole console(device->console, files, now);
    console.Write(now, sent);
    now += std::chrono::seconds(1);
    console.Write(now, sent);
    each.resize(2 * host::AnswerQueue::kCapacity);
    each.resize(console.Read(now + std::chrono::hours(10), each.data(), each.size()));
  }
  Expect(heard[0].size() <= host::AnswerQueue::kCapacity, "bounded answers");
  Expect(heard[0] == heard[1], "the same answers");
  return 0;
}
