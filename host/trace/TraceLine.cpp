#include "host/trace/TraceLine.h"

#include "host/support/Text.h"
#include "host/support/Utf8.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace host {
namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;
constexpr std::size_t kLongestAscii = 4096; // bytes that are also shown as text
constexpr std::size_t kUsualLine = 4096;    // characters

// --- writing

void WriteKey(JsonWriter& json, std::string_view key) {
  json.Key(key.data(), static_cast<rapidjson::SizeType>(key.size()));
}

void WriteText(JsonWriter& json, std::string_view key, std::string_view text) {
  WriteKey(json, key);
  const std::string utf8 = ToUtf8(text);
  json.String(utf8.data(), static_cast<rapidjson::SizeType>(utf8.size()));
}

// Room for a text of so many characters, none of which needs escaping: the library would look at each of them.
char* WriteRoom(JsonWriter& json, rapidjson::StringBuffer& buffer, std::string_view key, std::size_t size) {
  WriteKey(json, key);
  json.RawValue("", 0, rapidjson::kStringType); // what stands in front of it
  char* const room = buffer.Push(size + 2);
  room[0] = room[size + 1] = '"';
  return room + 1;
}

char Printable(char c) {
  return c < ' ' || c > '~' || c == '"' || c == '\\' ? '.' : c;
}

void WriteBytes(JsonWriter& json, rapidjson::StringBuffer& buffer, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  char* room = WriteRoom(json, buffer, "hex", bytes.size() * 2);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    *room++ = kDigits[byte >> 4];
    *room++ = kDigits[byte & 15];
  }
  if (!bytes.empty() && bytes.size() <= kLongestAscii)
    std::transform(bytes.begin(), bytes.end(), WriteRoom(json, buffer, "ascii", bytes.size()), Printable);
}

template <class Write>
void AppendObject(std::string& file, Write write) {
  rapidjson::StringBuffer buffer;
  buffer.Reserve(kUsualLine);
  JsonWriter json(buffer);
  json.StartObject();
  write(json, buffer);
  json.EndObject();
  file.append(buffer.GetString(), buffer.GetSize()).append(1, '\n');
}

void WriteCount(JsonWriter& json, std::string_view key, std::uint64_t number) {
  WriteKey(json, key);
  json.Uint64(number);
}

void WriteNumber(JsonWriter& json, std::string_view key, std::int64_t number) {
  WriteKey(json, key);
  json.Int64(number);
}

// --- reading

// -1: none.
int DigitOf(char c) {
  if (c >= '0' && c <= '9')
    return c - '0';
  const char lower = ToLowerAscii(c);
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

// The members of a line's object. The first that is not as it should be is kept as the problem.
class Members {
public:
  explicit Members(const rapidjson::Value& object) : m_object(object) {}

  bool Has(std::string_view key) const { return Find(key) != nullptr; }

  template <class Number>
  Number NumberOf(std::string_view key) {
    const rapidjson::Value* const value = Find(key);
    if (value && value->Is<Number>())
      return value->Get<Number>();
    Refuse(key, std::is_signed_v<Number> ? "a whole number" : "a whole number that is not negative", value);
    return {};
  }

  std::string TextOf(std::string_view key) {
    const rapidjson::Value* const value = Find(key);
    if (value && value->IsString())
      return {value->GetString(), value->GetStringLength()};
    Refuse(key, "a text", value);
    return {};
  }

  std::string BytesOf(std::string_view key) {
    const std::string digits = TextOf(key);
    std::string bytes(digits.size() / 2, '\0');
    bool fit = digits.size() % 2 == 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const int high = DigitOf(digits[2 * i]);
      const int low = DigitOf(digits[2 * i + 1]);
      fit = fit && high >= 0 && low >= 0;
      bytes[i] = static_cast<char>(high * 16 + low);
    }
    if (!fit)
      Refuse(key, "pairs of hexadecimal digits", Find(key));
    return bytes;
  }

  std::uint32_t CrcOf(std::string_view key) {
    const std::string digits = TextOf(key);
    std::uint32_t crc = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), crc, 16);
    if (digits.size() != 8 || error != std::errc() || end != digits.data() + digits.size())
      Refuse(key, "eight hexadecimal digits", Find(key));
    return crc;
  }

  std::vector<std::uint32_t> NumbersOf(std::string_view key) {
    const rapidjson::Value* const value = Find(key);
    std::vector<std::uint32_t> numbers;
    const bool isList = value && value->IsArray();
    for (rapidjson::SizeType i = 0; isList && i < value->Size() && (*value)[i].IsUint(); ++i)
      numbers.push_back((*value)[i].GetUint());
    if (!isList || numbers.size() != value->Size())
      Refuse(key, "a list of whole numbers", value);
    return numbers;
  }

  void Refuse(std::string problem) {
    if (m_problem.empty())
      m_problem = std::move(problem);
  }
  const std::string& Problem() const { return m_problem; }

private:
  const rapidjson::Value* Find(std::string_view key) const {
    const auto found = m_object.FindMember(rapidjson::Value(key.data(), static_cast<rapidjson::SizeType>(key.size())));
    return found != m_object.MemberEnd() ? &found->value : nullptr;
  }
  void Refuse(std::string_view key, std::string_view wanted, const rapidjson::Value* value) {
    Refuse(Quoted(key) + (value ? " is not " + std::string(wanted) : std::string(" is missing")));
  }

  const rapidjson::Value& m_object;
  std::string m_problem;
};

tl::expected<std::int64_t, std::string> ParseTime(const std::string& text) {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, microsecond = 0, end = 0;
  const int count = std::sscanf(text.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d.%6dZ%n", &year, &month, &day, &hour, &minute,
                                &second, &microsecond, &end);
  using namespace std::chrono;
  const year_month_day date{std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (count != 7 || static_cast<std::size_t>(end) != text.size() || !date.ok())
    return tl::unexpected<std::string>("\"start\" is not a time as in 2026-01-31T12:00:00.000000Z");
  const auto time = sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + microseconds(microsecond);
  return duration_cast<microseconds>(time.time_since_epoch()).count();
}

TraceHeader ReadHeader(Members& members) {
  TraceHeader header;
  if (members.TextOf("schema") != kTraceSchema)
    members.Refuse("\"schema\" is not " + Quoted(kTraceSchema));
  if (const auto version = members.NumberOf<std::uint64_t>("version"); version != kTraceVersion)
    members.Refuse("version " + std::to_string(version) + " of the format, where this program knows version " +
                   std::to_string(kTraceVersion));
  const auto start = ParseTime(members.TextOf("start"));
  if (!start)
    members.Refuse(start.error());
  header.start = start.value_or(0);
  header.channel = members.TextOf("channel");
  header.program = members.TextOf("program");
  return header;
}

TraceCall ReadCall(Members& members) {
  TraceCall call;
  const std::string name = members.TextOf("op");
  const auto known = std::find_if(kChannelOperations.begin(), kChannelOperations.end(),
                                  [&](const ChannelOperationTraits& traits) { return traits.name == name; });
  if (known == kChannelOperations.end()) {
    members.Refuse("unknown operation " + Quoted(name));
    return call;
  }
  call.operation = known->operation;
  const TraceShape& shape = call.Shape();
  call.start = members.NumberOf<std::uint64_t>("t");
  call.duration = members.NumberOf<std::uint64_t>("us");
  call.owner = members.NumberOf<std::uint64_t>("owner");
  call.result = members.NumberOf<std::int64_t>("result");
  for (std::size_t i = 0; i < shape.numbers.size() && !shape.numbers[i].empty(); ++i)
    call.numbers[i] = members.NumberOf<std::int64_t>(shape.numbers[i]);
  if (!shape.text.empty())
    call.text = members.TextOf(shape.text);
  if (shape.sends || shape.receives)
    call.bytes = members.BytesOf("hex");
  if (shape.transfersFile && members.Has("crc32"))
    call.contents = FileContents{members.NumberOf<std::uint64_t>("size"), members.CrcOf("crc32")};
  if (members.Has("progress"))
    call.progress = members.NumbersOf("progress");
  return call;
}

TraceEvent ReadEvent(Members& members, const rapidjson::Value& object) {
  TraceEvent event;
  event.name = members.TextOf("event");
  event.start = members.NumberOf<std::uint64_t>("t");
  for (const auto& member : object.GetObject()) {
    const std::string name(member.name.GetString(), member.name.GetStringLength());
    if (name != "event" && member.value.IsString())
      event.fields.emplace_back(name, members.TextOf(name));
  }
  return event;
}

TraceLine ReadLine(Members& members, const rapidjson::Value& object) {
  if (members.Has("schema"))
    return ReadHeader(members);
  if (members.Has("op"))
    return ReadCall(members);
  if (members.Has("event"))
    return ReadEvent(members, object);
  members.Refuse("neither a header (\"schema\"), nor a call (\"op\"), nor an event (\"event\")");
  return {};
}

} // namespace

void AppendTraceLine(std::string& file, const TraceHeader& header) {
  AppendObject(file, [&](JsonWriter& json, rapidjson::StringBuffer&) {
    WriteText(json, "schema", kTraceSchema);
    WriteCount(json, "version", kTraceVersion);
    WriteText(json, "start", TraceTimeText(header.start));
    WriteText(json, "channel", header.channel);
    WriteText(json, "program", header.program);
  });
}

void AppendTraceLine(std::string& file, const TraceCall& call) {
  AppendObject(file, [&](JsonWriter& json, rapidjson::StringBuffer& buffer) {
    const TraceShape& shape = call.Shape();
    WriteCount(json, "t", call.start);
    WriteKey(json, "op");
    json.String(call.Name().data(), static_cast<rapidjson::SizeType>(call.Name().size()));
    WriteCount(json, "owner", call.owner);
    if (!shape.text.empty())
      WriteText(json, shape.text, call.text);
    for (std::size_t i = 0; i < shape.numbers.size() && !shape.numbers[i].empty(); ++i)
      WriteNumber(json, shape.numbers[i], call.numbers[i]);
    if (shape.sends || shape.receives)
      WriteBytes(json, buffer, call.bytes);
    if (call.contents) {
      WriteCount(json, "size", call.contents->size);
      WriteText(json, "crc32", CrcText(call.contents->crc32));
    }
    if (!call.progress.empty()) {
      WriteKey(json, "progress");
      json.StartArray();
      for (const std::uint32_t step : call.progress)
        json.Uint(step);
      json.EndArray();
    }
    WriteNumber(json, "result", call.result);
    WriteCount(json, "us", call.duration);
  });
}

void AppendTraceLine(std::string& file, const TraceEvent& event) {
  AppendObject(file, [&](JsonWriter& json, rapidjson::StringBuffer&) {
    WriteCount(json, "t", event.start);
    WriteText(json, "event", event.name);
    for (const auto& [name, text] : event.fields)
      WriteText(json, name, text);
  });
}

tl::expected<TraceLine, std::string> ParseTraceLine(std::string_view line) {
  // No recursion: a line may nest as deep as it is long.
  constexpr unsigned kFlags = rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;
  rapidjson::Document document;
  document.Parse<kFlags>(line.data(), line.size());
  if (document.HasParseError())
    return tl::unexpected("column " + std::to_string(document.GetErrorOffset() + 1) + ": " +
                          rapidjson::GetParseError_En(document.GetParseError()));
  if (!document.IsObject())
    return tl::unexpected<std::string>("not a JSON object");
  Members members(document);
  TraceLine read = ReadLine(members, document);
  if (!members.Problem().empty())
    return tl::unexpected(members.Problem());
  return read;
}

std::string CrcText(std::uint32_t crc) {
  char text[16];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(crc));
  return text;
}

std::string TraceTimeText(std::int64_t time) {
  using namespace std::chrono;
  const sys_time<microseconds> moment{microseconds(time)};
  const auto day = floor<days>(moment);
  const year_month_day date{day};
  const hh_mm_ss clock{moment - day};
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

} // namespace host
