// What the windows remember and note, without the windows.
#include "host/notes/ChannelUse.h"
#include "host/notes/OutputLines.h"
#include "host/notes/SessionLog.h"
#include "host/notes/SettingsFile.h"
#include "host/notes/TraceLog.h"
#include "host/support/Files.h"
#include "tests/host/Device.h"
#include "tests/support/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace host;

namespace {

Settings Full() {
  Settings settings;
  settings.windows["Device host"] = {-1200, 20, 400, 300};
  settings.windows["Trace"] = {0, 0, 1, 1};
  settings.channels = {"tcp:192.168.1.20:4000", "sim"};
  settings.scripts = {"C:\\bench\\a = [b];.dcs", "C:\\bench\\J\xFCrgen.dcs"};
  return settings;
}

// A file of settings, and what was told about it.
struct Bench {
  TemporaryFolder folder;
  std::vector<std::string> told;

  SettingsFile Open() {
    return SettingsFile(folder.PathOf("settings.ini"), [this](const std::string& problem) {
      told.push_back(problem.substr(problem.rfind('\\') == std::string::npos ? 0 : problem.find("settings.ini")));
    });
  }
  void Use(const std::string& channel) {
    Open().Change([&](Settings& settings) { Remember(settings.channels, channel); });
  }
};

} // namespace

TEST_CASE("settings: written and read again") {
  const ReadSettings read = ParseSettings(SettingsText(Full()));
  CHECK(read.settings == Full());
  CHECK(read.badLines.empty());
  CHECK_FALSE(read.isForeign);
}

TEST_CASE("settings: what was understood stays, whatever stands beside it") {
  const ReadSettings read =
      ParseSettings("\xEF\xBB\xBF; mine\n[Windows]\nTrace=1 2 3\nLog = 5\t6 70 80  \r\nHost = 1 2 0 4\n"
                    "Far = 1 2 3 99999999999\n[channels]\nchannel = sim\nchannel=\nport = 7\n"
                    "channel = tcp:a=b:1\n[colours]\nchannel = red\n[scripts\n[scripts]\n=\nscript = a.dcs");
  CHECK(read.settings.windows == std::map<std::string, Place>{{"Log", {5, 6, 70, 80}}});
  CHECK(read.settings.channels == Recent{"sim", "tcp:a=b:1"});
  CHECK(read.settings.scripts == Recent{"a.dcs"});
  CHECK(read.badLines == std::vector<std::size_t>{3, 5, 6, 9, 10, 12, 13, 14, 16});
  CHECK_FALSE(read.isForeign);
  CHECK(ParseSettings("MZ\x90\n\1\2").isForeign);
  CHECK(ParseSettings("[other]\nchannel = x").isForeign);
  CHECK_FALSE(ParseSettings("\r\n; nothing yet").isForeign);
}

TEST_CASE("settings: the latest come first, ten of them, and nothing that a line cannot hold") {
  Recent recent;
  for (int i = 0; i < 12; ++i)
    Remember(recent, std::to_string(i));
  Remember(recent, "5");
  for (const std::string& bad : {std::string(), std::string("a\nb"), std::string(" a"), std::string(1001, 'x')})
    Remember(recent, bad);
  CHECK(recent == Recent{"5", "11", "10", "9", "8", "7", "6", "4", "3", "2"});
}

TEST_CASE("settings: two programs add to one file") {
  Bench bench;
  SettingsFile one = bench.Open();
  bench.Use("second");
  one.Change([](Settings& settings) { Remember(settings.channels, "first"); });
  CHECK(bench.Open().Get().channels == Recent{"first", "second"});
  std::filesystem::remove(bench.folder.SystemPath() / "settings.ini"); // by its user, who means it
  one.Change([](Settings& settings) { Remember(settings.channels, "third"); });
  CHECK(bench.Open().Get().channels == Recent{"third"});
  CHECK(bench.told.empty());
}

TEST_CASE("settings: files that are not ours, or cannot be had, are left alone and told once") {
  Bench bench;
  std::string before;
  std::string problem;
  SUBCASE("foreign") {
    before = "[fonts]\nname = value\n";
    problem = "settings.ini is no file of settings, and is left alone";
  }
  SUBCASE("huge") {
    before = std::string(2 << 20, ';');
    problem = "settings.ini is too large for settings, and is left alone";
  }
  bench.folder.Write("settings.ini", before);
  SettingsFile file = bench.Open();
  for (const char* const channel : {"a", "b"})
    file.Change([&](Settings& settings) { Remember(settings.channels, channel); });
  CHECK(file.Get().channels == Recent{"b", "a"}); // this program still knows
  CHECK(bench.folder.Read("settings.ini") == before);
  CHECK(bench.told == std::vector<std::string>{problem});
}

TEST_CASE("settings: of a damaged file, the readable is kept, and all of it beside") {
  Bench bench;
  const std::string damaged = "[channels]\nchannel = sim\n\x01\x02 rubbish\n";
  bench.folder.Write("settings.ini", damaged);
  bench.Use("tcp:a:1");
  CHECK(bench.Open().Get().channels == Recent{"tcp:a:1", "sim"});
  CHECK(bench.folder.Read("settings.ini.old") == damaged);
  CHECK(bench.folder.Names() == std::vector<std::string>{"settings.ini", "settings.ini.old"});
  REQUIRE(bench.told.size() == 1);
  CHECK(bench.told.front().starts_with("settings.ini:3: this line is not understood"));
}

TEST_CASE("settings: in a folder that is made, forgotten, and without a file at all") {
  TemporaryFolder folder;
  const auto tell = [](const std::string& problem) { FAIL(problem); };
  const auto use = [](SettingsFile& file) {
    file.Change([](Settings& settings) { Remember(settings.channels, "sim"); });
  };
  SettingsFile file(folder.PathOf("OndHost\\settings.ini"), tell);
  use(file);
  CHECK(ReadWholeFile(folder.PathOf("OndHost\\settings.ini"), 10000).value().find("channel = sim") !=
        std::string::npos);
  CHECK(file.ForgetAll());
  CHECK(file.Get() == Settings());
  use(file);
  CHECK_FALSE(IsAnythingAt(folder.PathOf("OndHost\\settings.ini")));
  SettingsFile none("", tell);
  use(none);
  CHECK(none.Get().channels == Recent{"sim"});
}

TEST_CASE("output as lines") {
  std::vector<std::string> taken;
  OutputLines lines([&](std::string_view line) { taken.emplace_back(line); });
  for (const char* const piece : {"one\ntw", "o\r", "\nstep 1\rstep 2\r", "step 3\n", "\n", "la", "st"})
    lines.Add(piece);
  lines.Finish();
  lines.Finish();
  CHECK(taken == std::vector<std::string>{"one", "two", "step 3", "", "last"});
}

TEST_CASE("the log: on one line each, the last of many, all in the file behind what was there") {
  TemporaryFolder folder;
  folder.Write("log.txt", "before\n");
  SessionLog log;
  log.Add(LogTopic::kProgram, "begins");
  REQUIRE(log.OpenFile(folder.PathOf("log.txt")));
  log.Add(LogTopic::kQuestion, "Go\r\non?");
  for (std::size_t i = 0; i < SessionLog::kMostLines; ++i)
    log.Add(LogTopic::kOutput, std::string(2000, 'x'));
  log.Flush();
  CHECK(log.First() == 2);
  CHECK(log.At(1).text.empty());
  CHECK(log.At(2).text.size() < 1100);
  const std::string file = folder.Read("log.txt");
  CHECK(file.starts_with("before\n"));
  CHECK(file.find("  program   begins\r\n") != std::string::npos);
  CHECK(file.find("  question  Go  on?\r\n") != std::string::npos);
  CHECK(std::count(file.begin(), file.end(), '\n') == 3 + static_cast<int>(SessionLog::kMostLines));
  CHECK_FALSE(SessionLog().OpenFile(folder.Path()));
}

TEST_CASE("the last traffic: events, owners by name, a row for many receives that find nothing") {
  TraceLog log;
  const auto texts = [&] {
    std::vector<std::string> rows;
    log.Visit(0, [&](std::uint64_t, const TraceLog::Row& row) {
      const auto* const call = std::get_if<TraceCall>(&row.record);
      rows.push_back(call ? std::string(call->Name()) + " " + (row.owner ? *row.owner : std::to_string(call->owner)) +
                                " " + std::to_string(row.repeated)
                          : std::get<TraceEvent>(row.record).name);
    });
    return rows;
  };
  TraceCall receive;
  receive.operation = ChannelOperation::kReceive;
  receive.owner = 1;
  log.Write(TraceEvent{std::string(kTraceConnect), 0, {{"channel", "sim"}}});
  log.Write(TraceEvent{std::string(kTraceOwner), 0, {{"number", "1"}, {"name", "Terminal"}}});
  log.Write(receive);
  log.Write(receive);
  log.Write(TraceEvent{std::string(kTraceConnect), 0, {{"channel", "sim"}}}); // counts owners anew
  log.Write(receive);
  CHECK(texts() == std::vector<std::string>{"connect", "owner", "Receive Terminal 2", "connect", "Receive 1 1"});
  receive.bytes = "x";
  for (std::size_t i = 0; i < TraceLog::kMostRows; ++i)
    log.Write(receive);
  CHECK(log.First() == 5);
  CHECK(log.Rows().End() == 5 + TraceLog::kMostRows);
}

TEST_CASE("who uses the channel, and how much goes over it") {
  const auto device = MakeDevice();
  ChannelUse use;
  ClientPort terminal("Terminal", *device, use);
  ClientPort script("Script Processor", *device, use);
  int owner = 0, other = 0;
  REQUIRE(script.Lock(&owner, 0) == 0);
  REQUIRE(script.Lock(&owner, 0) == 0);
  CHECK(terminal.Lock(&other, 0) != 0);
  REQUIRE(use.Holder());
  CHECK(use.Holder()->name == "Script Processor");
  CHECK(use.NameOf(&other) == "Terminal");
  std::uint64_t moved = 0;
  char buffer[100];
  CHECK(script.Transmit("id\r", 3, &moved) == 0);
  CHECK(script.Receive(buffer, sizeof buffer, &moved) == 0);
  CHECK(moved > 0);
  CHECK(script.DeleteDeviceFile(77) != 0);
  CHECK(script.TransmitFileFromMemory("abc", 3, 1, 1, 0, nullptr, nullptr, 1, 1) == 0);
  const ChannelCounts counts = use.Counts();
  CHECK(counts == ChannelCounts{.sent = 3, .files = 1, .received = moved, .calls = 4, .failed = 1});
  CHECK(script.Unlock(&owner) == 0);
  CHECK(use.Holder());
  CHECK(script.Unlock(&owner) == 0);
  CHECK_FALSE(use.Holder());
  CHECK(terminal.Unlock(&other) != 0); // which does not hold it
  REQUIRE(terminal.Lock(&other, 0) == 0);
  CHECK(use.Holder()->name == "Terminal");
  CHECK(use.Holder()->number == 2);
  use.Reset();
  CHECK(use.Counts() == ChannelCounts());
  CHECK(use.Holder());
  terminal.Unlock(&other);
}
