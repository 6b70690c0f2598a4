#include "host/channel/sim/description/DeviceReader.h"

#include "host/channel/ChannelErrors.h"
#include "host/support/Text.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace host {
namespace {

using std::chrono::milliseconds;

constexpr std::uint64_t kLongestTime = 3600000;                                  // ms
constexpr std::uint64_t kMany = std::numeric_limits<std::int64_t>::max();        // of bytes, commands, calls
constexpr std::uint64_t kMostBlocks = std::numeric_limits<std::uint32_t>::max(); // as a directory can tell them
constexpr double kParts = 4294967296.0;                                          // of which a rate tells how many

class DeviceReader {
public:
  void ReadLine(std::string_view text, std::size_t line);
  tl::expected<DeviceDescription, std::vector<Mistake>> Finish(std::size_t lines);

private:
  struct Statement {
    std::string_view word; // that it begins with
    void (DeviceReader::*read)(StatementReader& line);
  };
  static const Statement kStatements[];
  struct StateUse {
    std::string state;
    std::size_t line;
    std::size_t column;
  };

  // In brackets; empty from the second time on.
  std::string StatementNames();

  void ReadName(StatementReader& line) { m_device.name = line.Quote("the device's name").Plain(); }
  void ReadAnswers(StatementReader& line);
  void ReadCommands(StatementReader& line);
  void ReadPrompt(StatementReader& line) { m_device.console.prompt = line.Quote("the prompt").Plain(); }
  void ReadEcho(StatementReader&) { m_device.console.echoes = true; }
  void ReadIgnore(StatementReader& line);
  void ReadLike(StatementReader& line);
  void ReadValue(StatementReader& line);
  void ReadBegin(StatementReader& line);

  void ReadOn(StatementReader& line);
  void ReadOtherwise(StatementReader& line);
  void ReadEvery(StatementReader& line);
  void ReadAt(StatementReader& line);
  void ReadAnswer(StatementReader& line);
  void ReadSend(StatementReader& line);
  void ReadSet(StatementReader& line);
  void ReadAdd(StatementReader& line);
  void ReadGo(StatementReader& line);

  void ReadStore(StatementReader& line);
  void ReadFolder(StatementReader& line) { m_device.store.folder = line.Quote("the folder").Plain(); }
  void ReadBlock(StatementReader& line);
  void ReadFile(StatementReader& line);

  void ReadFail(StatementReader& line);
  void ReadLock(StatementReader& line);
  void ReadDrop(StatementReader& line) { ReadRate(line, &CableFaults::Rates::dropped); }
  void ReadCorrupt(StatementReader& line) { ReadRate(line, &CableFaults::Rates::corrupted); }
  void ReadRate(StatementReader& line, std::uint64_t CableFaults::Rates::*rate);
  void ReadCut(StatementReader& line);
  void ReadSilent(StatementReader& line);
  void ReadSlow(StatementReader& line);
  void ReadSeed(StatementReader& line);

  void BeginRule(StatementReader& line, Rule rule);
  // Of the statement that belongs to a rule; null, and the line has the mistake, when there is none above.
  Rule* CurrentRule(StatementReader& line, std::size_t column);
  const Pattern* PatternOf(const Rule& rule) const {
    return rule.trigger == Rule::Trigger::kCommand ? &rule.pattern : nullptr;
  }
  void ReadSay(StatementReader& line, bool endsLine);
  ValuePlace ReadPlaceToSet(StatementReader& line, const Rule* rule);
  milliseconds ReadTime(StatementReader& line, std::string_view what, std::uint64_t least);
  std::uint64_t ReadSize(StatementReader& line, std::string_view what, std::uint64_t most);
  // Reads "after ..." and "in pieces of ...", as far as they are there.
  bool ReadPace(StatementReader& line, Pace& pace);
  std::optional<CableFaults::Direction> ReadDirection(StatementReader& line);
  std::string ReadState(StatementReader& line, std::vector<StateUse>& uses);
  void CheckStates();

  DeviceDescription m_device;
  std::vector<StateUse> m_statesNeeded;
  std::vector<StateUse> m_statesReached;
  std::size_t m_line = 0;
  bool m_isAnything = false;
  bool m_namesAreTold = false;
  bool m_isInRule = false; // also in one with a mistake, whose actions are then no mistakes
  std::vector<Mistake> m_mistakes;
};

constexpr DeviceReader::Statement DeviceReader::kStatements[] = {
    {"name", &DeviceReader::ReadName},
    {"answers", &DeviceReader::ReadAnswers},
    {"commands", &DeviceReader::ReadCommands},
    {"prompt", &DeviceReader::ReadPrompt},
    {"echo", &DeviceReader::ReadEcho},
    {"ignore", &DeviceReader::ReadIgnore},
    {"like", &DeviceReader::ReadLike},
    {"value", &DeviceReader::ReadValue},
    {"begin", &DeviceReader::ReadBegin},
    {"on", &DeviceReader::ReadOn},
    {"otherwise", &DeviceReader::ReadOtherwise},
    {"every", &DeviceReader::ReadEvery},
    {"at", &DeviceReader::ReadAt},
    {"answer", &DeviceReader::ReadAnswer},
    {"send", &DeviceReader::ReadSend},
    {"set", &DeviceReader::ReadSet},
    {"add", &DeviceReader::ReadAdd},
    {"go", &DeviceReader::ReadGo},
    {"store", &DeviceReader::ReadStore},
    {"folder", &DeviceReader::ReadFolder},
    {"block", &DeviceReader::ReadBlock},
    {"file", &DeviceReader::ReadFile},
    {"fail", &DeviceReader::ReadFail},
    {"lock", &DeviceReader::ReadLock},
    {"drop", &DeviceReader::ReadDrop},
    {"corrupt", &DeviceReader::ReadCorrupt},
    {"cut", &DeviceReader::ReadCut},
    {"silent", &DeviceReader::ReadSilent},
    {"slow", &DeviceReader::ReadSlow},
    {"seed", &DeviceReader::ReadSeed},
};

std::string DeviceReader::StatementNames() {
  std::string names;
  for (const Statement& known : kStatements)
    names.append(names.empty() ? " (" : ", ").append(known.word);
  return std::exchange(m_namesAreTold, true) ? "" : names + ")";
}

void DeviceReader::ReadLine(std::string_view text, std::size_t number) {
  StatementReader line(text, number);
  if (line.AtEnd())
    return;
  m_line = number;
  m_isAnything = true;
  const auto* const statement = std::find_if(std::begin(kStatements), std::end(kStatements),
                                             [&](const Statement& known) { return line.Take(known.word); });
  if (statement == std::end(kStatements)) {
    line.FailExpecting("a statement" + StatementNames());
  } else {
    (this->*statement->read)(line);
    line.ExpectEnd();
  }
  if (line.HasFailed())
    m_mistakes.push_back(*line.Failure());
}

tl::expected<DeviceDescription, std::vector<Mistake>> DeviceReader::Finish(std::size_t lines) {
  if (!m_isAnything)
    m_mistakes.push_back({lines, 1, "expected a statement, found the end of the file: it describes no device"});
  CheckStates();
  if (m_mistakes.empty())
    return std::move(m_device);
  std::stable_sort(m_mistakes.begin(), m_mistakes.end(),
                   [](const Mistake& a, const Mistake& b) { return a.line < b.line; });
  return tl::unexpected(std::move(m_mistakes));
}

// A state that nothing leads to is a slip of the pen.
void DeviceReader::CheckStates() {
  const auto isReached = [&](const std::string& state) {
    return state == m_device.console.state || std::any_of(m_statesReached.begin(), m_statesReached.end(),
                                                          [&](const StateUse& use) { return use.state == state; });
  };
  for (const StateUse& use : m_statesNeeded) {
    if (!isReached(use.state))
      m_mistakes.push_back({use.line, use.column,
                            "the device never comes into the state " + Quoted(use.state) + ": expected \"begin in " +
                                use.state + "\" or \"go to " + use.state + "\" in some line"});
  }
}

// --- how it talks

void DeviceReader::ReadAnswers(StatementReader& line) {
  if (line.Take("end")) {
    line.Expect("with");
    m_device.console.answerEnding = line.Quote("what stands behind an answer").Plain();
  } else if (!ReadPace(line, m_device.console.pace)) {
    line.FailExpecting("\"end with\", \"after\" or \"in pieces of\"");
  }
}

void DeviceReader::ReadCommands(StatementReader& line) {
  line.Expect("end");
  line.Expect("with");
  const QuotedText text = line.Quote("what stands behind a command");
  if (text.bytes.empty())
    line.Fail(text.column, "the end of a command cannot be empty");
  m_device.console.commandEnding = text.Plain();
}

void DeviceReader::ReadIgnore(StatementReader& line) {
  line.Expect("case");
  m_device.console.ignoresCase = true;
}

void DeviceReader::ReadLike(StatementReader& line) {
  line.Expect("sim");
  m_device.console.isLikeSim = true;
}

void DeviceReader::ReadValue(StatementReader& line) {
  const std::size_t column = line.Column();
  std::string name = line.Name("the name of a value");
  const bool hasElements = line.Take("[");
  if (hasElements)
    line.Expect("]");
  const std::string text = line.Quote("what it is at the start").Plain();
  Values& values = m_device.console.values;
  if (values.contains(name) || values.contains(name + "[]"))
    line.Fail(column, "there is already a value " + Quoted(name));
  if (!line.HasFailed())
    values[name + (hasElements ? "[]" : "")] = text;
}

void DeviceReader::ReadBegin(StatementReader& line) {
  line.Expect("in");
  m_device.console.state = line.Name("the name of a state");
}

std::string DeviceReader::ReadState(StatementReader& line, std::vector<StateUse>& uses) {
  const std::size_t column = line.Column();
  std::string state = line.Name("the name of a state");
  if (!line.HasFailed())
    uses.push_back({state, m_line, column});
  return state;
}

milliseconds DeviceReader::ReadTime(StatementReader& line, std::string_view what, std::uint64_t least) {
  const auto number = static_cast<std::int64_t>(line.Number(what, least, kLongestTime));
  if (line.Take("s"))
    return milliseconds(std::min(number * 1000, static_cast<std::int64_t>(kLongestTime)));
  line.Expect("ms");
  return milliseconds(number);
}

std::uint64_t DeviceReader::ReadSize(StatementReader& line, std::string_view what, std::uint64_t most) {
  const std::size_t column = line.Column();
  const std::uint64_t number = line.Number(what, 1, most);
  unsigned shift = 0;
  if (line.Take("KiB"))
    shift = 10;
  else if (line.Take("MiB"))
    shift = 20;
  else if (!line.Take("bytes") && !line.Take("byte"))
    line.FailExpecting("bytes, KiB or MiB");
  if (number > most >> shift)
    line.Fail(column, "this is too much: at most " + std::to_string(most) + " bytes");
  return number << shift;
}

bool DeviceReader::ReadPace(StatementReader& line, Pace& pace) {
  const bool hasDelay = line.Take("after");
  if (hasDelay)
    pace.delay = ReadTime(line, "a time", 0);
  const bool hasPieces = line.Take("in");
  if (hasPieces) {
    line.Expect("pieces");
    line.Expect("of");
    pace.pieceSize = static_cast<std::size_t>(ReadSize(line, "how many", 1 << 20));
    line.Expect("every");
    pace.gap = ReadTime(line, "a time", 0);
  }
  return hasDelay || hasPieces;
}

// --- rules

void DeviceReader::BeginRule(StatementReader& line, Rule rule) {
  m_isInRule = true;
  if (line.Take("in"))
    rule.state = ReadState(line, m_statesNeeded);
  m_device.console.rules.push_back(std::move(rule));
}

void DeviceReader::ReadOn(StatementReader& line) {
  Rule rule{Rule::Trigger::kCommand, {}, {}, {}, {}};
  rule.pattern = Pattern::Read(line.Quote("a command"), line);
  BeginRule(line, std::move(rule));
}

void DeviceReader::ReadOtherwise(StatementReader& line) {
  BeginRule(line, {Rule::Trigger::kOtherwise, {}, {}, {}, {}});
}

void DeviceReader::ReadEvery(StatementReader& line) {
  const milliseconds interval = ReadTime(line, "a time", 1);
  BeginRule(line, {Rule::Trigger::kEvery, {}, interval, {}, {}});
}

void DeviceReader::ReadAt(StatementReader& line) {
  line.Expect("start");
  m_isInRule = true;
  m_device.console.rules.push_back({Rule::Trigger::kStart, {}, {}, {}, {}});
}

Rule* DeviceReader::CurrentRule(StatementReader& line, std::size_t column) {
  if (m_isInRule)
    return &m_device.console.rules.back();
  line.Fail(column, "expected \"on\", \"otherwise\", \"every\" or \"at start\" in a line above this one");
  return nullptr;
}

void DeviceReader::ReadAnswer(StatementReader& line) {
  ReadSay(line, true);
}

void DeviceReader::ReadSend(StatementReader& line) {
  ReadSay(line, false);
}

void DeviceReader::ReadSay(StatementReader& line, bool endsLine) {
  const std::size_t column = line.Column();
  Rule* const rule = CurrentRule(line, column);
  const QuotedText text = line.Quote("a text");
  if (!rule || line.HasFailed())
    return;
  Say say{FilledText::Read(text, PatternOf(*rule), m_device.console.values, line), endsLine, {}};
  Pace pace;
  if (ReadPace(line, pace))
    say.pace = pace;
  rule->actions.emplace_back(std::move(say));
}

ValuePlace DeviceReader::ReadPlaceToSet(StatementReader& line, const Rule* rule) {
  const std::size_t column = line.Column();
  std::string text = line.Name("the name of a value");
  if (line.Take("[")) {
    text += '[';
    const std::size_t indexColumn = line.Column();
    if (line.Take("]"))
      line.Fail(indexColumn, "expected an index, found \"]\"");
    else
      text += line.Index() + ']';
    line.Expect("]");
  }
  ValuePlace place;
  if (rule && !line.HasFailed())
    ReadPlace(text, column, PatternOf(*rule), m_device.console.values, true, line, place);
  return place;
}

void DeviceReader::ReadSet(StatementReader& line) {
  Rule* const rule = CurrentRule(line, line.Column());
  ValuePlace place = ReadPlaceToSet(line, rule);
  line.Expect("to");
  const QuotedText text = line.Quote("a text");
  if (rule && !line.HasFailed())
    rule->actions.emplace_back(
        SetValue{std::move(place), FilledText::Read(text, PatternOf(*rule), m_device.console.values, line)});
}

void DeviceReader::ReadAdd(StatementReader& line) {
  Rule* const rule = CurrentRule(line, line.Column());
  constexpr std::int64_t kLargest = 1000000000;
  const std::int64_t number = line.SignedNumber("a number", -kLargest, kLargest);
  line.Expect("to");
  ValuePlace place = ReadPlaceToSet(line, rule);
  if (rule && !line.HasFailed())
    rule->actions.emplace_back(AddToValue{std::move(place), number});
}

void DeviceReader::ReadGo(StatementReader& line) {
  Rule* const rule = CurrentRule(line, line.Column());
  line.Expect("to");
  std::string state = ReadState(line, m_statesReached);
  if (rule)
    rule->actions.emplace_back(GoToState{std::move(state)});
}

// --- its files

void DeviceReader::ReadStore(StatementReader& line) {
  StoreDescription& store = m_device.store;
  store.exists = !line.Take("none");
  if (!store.exists)
    return;
  store.blocks = static_cast<std::uint32_t>(line.Number("\"none\" or a number of blocks", 0, kMostBlocks));
  if (!line.Take("block"))
    line.Expect("blocks");
  store.areFree = line.Take("free");
}

void DeviceReader::ReadBlock(StatementReader& line) {
  line.Expect("time");
  m_device.store.blockTime = ReadTime(line, "a time", 0);
}

void DeviceReader::ReadFile(StatementReader& line) {
  constexpr std::uint64_t kLargestFile = 16 << 20;
  FileAtStart file{m_line, 0, 0, {}, {}};
  file.id = static_cast<std::uint8_t>(line.Number("the file's id", 0, 255));
  line.Expect("type");
  file.type = static_cast<std::uint8_t>(line.Number("its type", 0, 255));
  if (line.Take("from")) {
    const QuotedText path = line.Quote("a path");
    file.path = path.Plain();
    if (file.path.empty())
      line.Fail(path.column, "the path is empty");
  } else if (line.Take("of")) {
    file.bytes.assign(static_cast<std::size_t>(ReadSize(line, "its size", kLargestFile)), '\0');
  } else {
    file.bytes = line.Quote("\"from\", \"of\" or its bytes").Plain();
  }
  if (!line.HasFailed())
    m_device.store.files.push_back(std::move(file));
}

// --- faults

void DeviceReader::ReadFail(StatementReader& line) {
  const std::size_t column = line.Column();
  std::string text = line.Name("an operation, as --fault names them,");
  bool hasCode = line.Take("with");
  if (!hasCode && !line.AtEnd()) {
    text += ":" + std::to_string(line.Number("\"with\" or the number of a call", 1, kMany));
    hasCode = line.Take("with");
  }
  using Code = std::numeric_limits<std::int32_t>;
  std::int64_t code = kDataNotTaken;
  if (hasCode)
    code = line.SignedNumber("a code", Code::min(), Code::max());
  if (line.HasFailed())
    return;
  const auto fault = ParseFault(text + "=" + std::to_string(code));
  if (fault)
    m_device.faults.push_back(*fault);
  else
    line.Fail(column, fault.error());
}

void DeviceReader::ReadLock(StatementReader& line) {
  line.Expect("refused");
  const std::uint64_t call = line.AtEnd() ? 0 : line.Number("the number of a call", 1, kMany);
  m_device.faults.push_back({ChannelOperation::kLock, call, kChannelLocked});
}

std::optional<CableFaults::Direction> DeviceReader::ReadDirection(StatementReader& line) {
  if (line.AtEnd())
    return std::nullopt;
  const bool isTo = line.Take("to");
  if (!isTo && !line.Take("from"))
    line.FailExpecting("\"to device\", \"from device\" or the end of the line");
  line.Expect("device");
  return isTo ? CableFaults::kToDevice : CableFaults::kFromDevice;
}

void DeviceReader::ReadRate(StatementReader& line, std::uint64_t CableFaults::Rates::*rate) {
  const double percent = line.Fraction("how much", 0.0001, 100);
  line.Expect("%");
  const auto direction = ReadDirection(line);
  for (const auto each : {CableFaults::kToDevice, CableFaults::kFromDevice}) {
    if (direction.value_or(each) == each)
      m_device.cable.rates[each].*rate = static_cast<std::uint64_t>(percent / 100 * kParts);
  }
}

void DeviceReader::ReadCut(StatementReader& line) {
  line.Expect("after");
  const std::uint64_t size = ReadSize(line, "how much", kMany);
  m_device.cable.cut = CableFaults::Cut{size, ReadDirection(line)};
}

void DeviceReader::ReadSilent(StatementReader& line) {
  m_device.console.silentAfter = 0;
  if (!line.Take("after"))
    return;
  m_device.console.silentAfter = line.Number("how many", 1, kMany);
  if (!line.Take("command"))
    line.Expect("commands");
}

void DeviceReader::ReadSlow(StatementReader& line) {
  m_device.console.bytesPerSecond = line.Number("how many", 1, 1000000000);
  line.Expect("bytes");
  line.Expect("a");
  line.Expect("second");
}

void DeviceReader::ReadSeed(StatementReader& line) {
  m_device.seed = static_cast<std::uint32_t>(line.Number("a number", 0, std::numeric_limits<std::uint32_t>::max()));
}

} // namespace

tl::expected<DeviceDescription, std::vector<Mistake>> ParseDevice(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark))
    text.remove_prefix(kByteOrderMark.size());
  DeviceReader reader;
  std::size_t number = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    ++number;
    if (const std::size_t zero = line.find('\0'); zero != std::string_view::npos)
      return tl::unexpected(std::vector<Mistake>{
          {number, zero + 1, "expected a plain text, found a zero byte (is it saved as \"Unicode\"?)"}});
    if (line.ends_with('\r'))
      line.remove_suffix(1);
    reader.ReadLine(line, number);
  }
  return reader.Finish(std::max<std::size_t>(number, 1));
}

} // namespace host
