#include "host/channel/sim/FileStore.h"
#include "host/channel/sim/description/DescribedConsole.h"
#include "host/channel/sim/description/DeviceReader.h"
#include "tests/host/Device.h"
#include "tests/support/Cases.h"
#include "tests/support/TemporaryFolder.h"

using namespace host;

namespace {

std::string Joined(const Words& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

Words MistakesIn(const Words& lines) {
  const auto device = ParseDevice(lines == Words{""} ? "" : Joined(lines));
  Words texts;
  if (device)
    return {"no mistake"};
  for (const Mistake& mistake : device.error())
    texts.push_back(std::to_string(mistake.line) + ":" + std::to_string(mistake.column) + ": " + mistake.text);
  return texts;
}

// Lines of a device file, then what is done to it; what is heard behind each of that, without the blanks at its ends.
Words Talk(const Words& inputs) {
  const auto isStep = [](const std::string& input) { return input.starts_with("> ") || input.starts_with("@ "); };
  const auto steps = std::find_if(inputs.begin(), inputs.end(), isStep);
  auto device = ParseDevice(Joined({inputs.begin(), steps}));
  REQUIRE_MESSAGE(device, device.error().front().text);
  const FileStore files(1, {});
  Console::Time now{};
  DescribedConsole console(std::move(device->console), files, now);
  Words heard;
  for (auto step = steps; step != inputs.end(); ++step) {
    if (step->starts_with('>'))
      console.Write(now, step->substr(2));
    else
      now += std::chrono::milliseconds(std::stoi(step->substr(2)));
    char buffer[100];
    std::string text(buffer, console.Read(now, buffer, sizeof buffer));
    text.erase(text.find_last_not_of(' ') + 1);
    heard.push_back(text);
  }
  return heard;
}

// The channel of a device file with these lines, which may refer to files in the folder.
tl::expected<std::unique_ptr<Channel>, ChannelFailure> Made(const TemporaryFolder& folder, const Words& lines,
                                                            const std::string& settings = "") {
  folder.Write("device.sim", Joined(lines));
  ChannelOptions options;
  options.text = "sim:" + (folder.SystemPath() / "device.sim").string() + settings;
  return MakeChannel(options);
}

// What the device has to say after each of many questions.
std::string HeardOf(const TemporaryFolder& folder, const Words& lines, const std::string& settings,
                    std::size_t together) {
  auto device = Made(folder, lines, settings);
  REQUIRE(device);
  std::string sent;
  for (int i = 0; i < 100; ++i)
    sent += "echo " + std::to_string(i) + " abcdefghijkl\r";
  std::string heard;
  for (; !sent.empty(); sent.erase(0, std::min(together, sent.size()))) {
    std::uint64_t count = 0;
    (*device)->Transmit(sent.data(), std::min(together, sent.size()), &count);
    char buffer[4096];
    (*device)->Receive(buffer, sizeof buffer, &count);
    heard.append(buffer, static_cast<std::size_t>(count));
  }
  return heard;
}

} // namespace

TEST_CASE("device file: mistakes") {
  CheckCases("host/DeviceFile.cases", "mistakes", MistakesIn);
}

TEST_CASE("device file: talk") {
  CheckCases("host/DeviceFile.cases", "talk", Talk);
}

TEST_CASE("device file: patterns have bounds, and so has the time that they take") {
  std::string pattern;
  for (int i = 0; i < 32; ++i)
    pattern += "{p" + std::to_string(i) + ":text}";
  CHECK(MistakesIn({"on \"" + pattern + "{more}\""}) == Words{"1:315: a pattern has too many pieces"});
  const auto start = std::chrono::steady_clock::now();
  CHECK(Talk({"on \"" + pattern + "x\"", "answer \"1\"",
              "> " + std::string(DescribedConsole::kLongestCommand, 'y') + "\n"}) == Words{""});
  CHECK(std::chrono::steady_clock::now() - start < std::chrono::seconds(20)); // an hour of trying all ways would not do
}

TEST_CASE("device file: long commands, answers and values have bounds") {
  const std::string longest(DescribedConsole::kLongestCommand, 'x');
  CHECK(Talk({"on \"{w}\"", "answer \"1\"", "> " + longest + "\n", "> " + longest + "x\n", "> a\n"}) ==
        Words{"1\r\n", "", "1\r\n"});
  auto device = ParseDevice("value v \"xxxxxxxx\"\non \"d\"\nset v to \"{v}{v}\"\non \"g\"\nanswer \"{v}\"\n");
  REQUIRE(device);
  const FileStore files(1, {});
  DescribedConsole console(device->console, files, {});
  for (int i = 0; i < 30; ++i)
    console.Write({}, "d\n");
  for (int i = 0; i < 30; ++i)
    console.Write({}, "g\n");
  std::string heard(1 << 20, ' ');
  CHECK(console.Read({}, heard.data(), heard.size()) == AnswerQueue::kCapacity);
  CHECK(heard.find("\r\n") == DescribedConsole::kLongestValue);
}

TEST_CASE("device file: chance is the seed's, however the bytes come") {
  const TemporaryFolder folder;
  const Words lines{"like sim", "drop 2 %", "corrupt 1 % from device"};
  const std::string heard = HeardOf(folder, lines, ",seed=1", 1);
  CHECK(heard == HeardOf(folder, lines, ",seed=1", 60));
  CHECK(heard != HeardOf(folder, lines, ",seed=2", 1));
  CHECK(heard == HeardOf(folder, {"seed 1", "like sim", "drop 2 %", "corrupt 1 % from device"}, "", 1));
  CHECK(heard != HeardOf(folder, lines, "", 1)); // once in four thousand million times
  CHECK(HeardOf(folder, {"like sim", "drop 100 % from device"}, "", 1).empty());
  CHECK(HeardOf(folder, {"like sim", "drop 100 % to device"}, "", 1).empty());
  auto device = Made(folder, lines, ",seed=5");
  REQUIRE(device);
  CHECK((*device)->Notice().find("device.sim,seed=5\"") != std::string::npos);
  device = Made(folder, {"like sim", "seed 5"});
  REQUIRE(device);
  CHECK((*device)->Notice().empty());
}

TEST_CASE("device file: the files at the start, and a store with so much room") {
  const TemporaryFolder folder;
  folder.Write("image.bin", std::string(600, 'i'));
  auto device = Made(folder, {"store 2 blocks free", "file 3 type 4 from \"image.bin\"", "file 1 type 2 \"a\\n\"",
                              "file 9 type 9 of 1 KiB", "folder \"kept\"", "block time 0 ms"});
  REQUIRE_MESSAGE(device, device.error().text);
  CHECK(DirectoryOf(**device) == "1:2:2 3:4:600 9:9:1024");
  CHECK(folder.Read("kept/001-type2.bin") == "a\n");
  CHECK(Send(**device, std::string(1025, 'x'), 7, 1) == kDeviceFull);
  CHECK(Send(**device, std::string(1024, 'x'), 7, 1) == kChannelOk);
  for (const auto& [line, message] : std::vector<std::pair<std::string, std::string>>{
           {"file 1 type 1 from \"none\"", "device.sim:2: \"none\" cannot be read"},
           {"file 1 type 1 from \"image.bin\"", "device.sim:2: the file cannot be on the device: Device full"}}) {
    device = Made(folder, {"store 1 blocks", line});
    REQUIRE_FALSE(device);
    CHECK(device.error().badText);
    CHECK(device.error().text.ends_with(message));
  }
  device = Made(folder, {"store none"});
  REQUIRE(device);
  CHECK((*device)->ReadDirectory() == kNoDeviceFiles);
}

TEST_CASE("device file: a cable that is cut is dead for good, and what had arrived can be read") {
  const TemporaryFolder folder;
  std::uint64_t count = 0;
  char buffer[100];
  auto device = Made(folder, {"like sim", "cut after 10 bytes to device"});
  REQUIRE(device);
  CHECK((*device)->Transmit("led\rled\r", 8, &count) == kChannelOk);
  CHECK((*device)->Transmit("led\r", 4, &count) == kChannelOk); // into a cable that is cut
  CHECK((*device)->GetState() == 2);
  CHECK_FALSE((*device)->HasEnded());
  CHECK((*device)->Transmit("led\r", 4, &count) == kNotOpen);
  CHECK((*device)->ReadDirectory() == kNotOpen);
  REQUIRE((*device)->Receive(buffer, sizeof buffer, &count) == kChannelOk);
  CHECK(std::string(buffer, count) == "off\r\noff\r\n");
  CHECK((*device)->Receive(buffer, sizeof buffer, &count) == kNotOpen);
  CHECK((*device)->HasEnded());
  CHECK((*device)->WaitUntilSent() == kNotOpen);
  CHECK(std::string((*device)->GetInfoString(OND_INFO_ERROR, kNotOpen)) == "The cable is cut");

  device = Made(folder, {"like sim", "cut after 7 bytes from device"});
  REQUIRE(device);
  CHECK((*device)->Transmit("led\rled\r", 8, &count) == kChannelOk);
  REQUIRE((*device)->Receive(buffer, sizeof buffer, &count) == kChannelOk);
  CHECK(std::string(buffer, count) == "off\r\nof");
  CHECK((*device)->Receive(buffer, sizeof buffer, &count) == kNotOpen);
  CHECK((*device)->WaitUntilSent() == kChannelOk);

  device = Made(folder, {"cut after 1 KiB"});
  REQUIRE(device);
  const auto count40 = [](void* steps, std::uint32_t) -> std::int32_t { return ++*static_cast<int*>(steps), 0; };
  int steps = 0;
  CHECK((*device)->TransmitFileFromMemory(std::string(2048, 'x').data(), 2048, 1, 1, OND_FILE_NORMAL, count40, &steps,
                                          1, 40) == kNotOpen);
  CHECK(steps == 20);
  CHECK((*device)->GetState() == 2);
}
