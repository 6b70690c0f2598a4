// JSON for programs: the report as JSON Lines, and the values of `--get-file`.
#include "host/report/ReportText.h"
#include "host/report/Reports.h"
#include "host/report/Verdict.h"
#include "host/support/Utf8.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace host {
namespace {

// An object being written, member by member. `Writer` is one of the library's.
template <class Writer>
class Members {
public:
  explicit Members(Writer& writer) : m_writer(writer) { m_writer.StartObject(); }
  ~Members() { m_writer.EndObject(); }
  Members(const Members&) = delete;
  Members& operator=(const Members&) = delete;

  Members& Text(std::string_view name, std::string_view bytes) {
    Name(name);
    const std::string text = ToUtf8(bytes);
    m_writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return *this;
  }
  Members& Number(std::string_view name, std::int64_t number) {
    Name(name);
    m_writer.Int64(number);
    return *this;
  }
  Members& Number(std::string_view name, std::uint64_t number) {
    Name(name);
    m_writer.Uint64(number);
    return *this;
  }
  Members& Truth(std::string_view name, bool value) {
    Name(name);
    m_writer.Bool(value);
    return *this;
  }
  Members& Nothing(std::string_view name) {
    Name(name);
    m_writer.Null();
    return *this;
  }
  Writer& Name(std::string_view name) {
    const std::string text = ToUtf8(name);
    m_writer.Key(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return m_writer;
  }

private:
  Writer& m_writer;
};

template <class Writer>
void WriteValues(Writer& writer, const ScriptRecord& script) {
  Members members(writer);
  for (const NamedValue& value : script.values) {
    if (const auto* const text = std::get_if<std::string>(&value.value))
      members.Text(value.name, *text);
    else if (const auto* const number = std::get_if<std::uint64_t>(&value.value))
      members.Number(value.name, *number);
    else
      members.Number(value.name, std::get<std::int64_t>(value.value));
  }
}

template <class Writer>
void AddCode(Members<Writer>& members, const ScriptRecord& script) {
  if (script.verdict == Verdict::kNotRun)
    members.Nothing("code");
  else
    members.Number("code", std::int64_t{script.code});
}

using LineWriter = rapidjson::Writer<rapidjson::StringBuffer>;

// A line of the report in the making.
class Lines {
public:
  // `record` says what the line is about.
  template <class Fill>
  void Add(const char* record, Fill fill) {
    rapidjson::StringBuffer buffer;
    LineWriter writer(buffer);
    {
      Members members(writer);
      members.Text("record", record);
      fill(members);
    }
    m_text.append(buffer.GetString(), buffer.GetSize()) += '\n';
  }

  // Of a thing that happened while a script ran.
  void Add(const OutputLine& output) {
    Add("output", [&](auto& line) { line.Number("at_us", At(output)).Text("text", output.text); });
  }
  // Numbers as texts: they are exact, whatever reads them.
  void Add(const Measurement& measurement) {
    Add("measurement", [&](auto& line) {
      line.Number("at_us", At(measurement)).Text("name", measurement.name).Text("value", measurement.value);
      AddLimit(line, "low", measurement.low);
      AddLimit(line, "high", measurement.high);
      line.Text("unit", measurement.unit).Truth("passed", measurement.passed);
    });
  }
  void Add(const TimedAnswer& timed) {
    Add("question", [&](auto& line) {
      const AnsweredQuestion& answered = timed.answered;
      line.Number("at_us", At(timed)).Number("took_us", std::int64_t{timed.took.count()});
      line.Text("caption", answered.question.caption).Text("prompt", answered.question.prompt);
      if (answered.answer)
        line.Text("answer", *answered.answer);
      else
        line.Nothing("answer");
      line.Text("by", answered.by);
    });
  }
  void Add(const TrafficEntry& entry) {
    Add("traffic", [&](auto& line) {
      line.Number("at_us", At(entry)).Number("took_us", std::int64_t{entry.took.count()});
      line.Text("operation", entry.operation).Number("answer", entry.answer);
      line.Number("bytes", entry.bytes).Text("data", entry.data);
    });
  }
  template <class Item>
  void Add(const BoundedLog<Item>& log) {
    for (std::size_t i = 0; i < log.Size(); ++i) {
      if (i == log.LeftOutAt() && log.LeftOut() != 0)
        Add("left out", [&](auto& line) { line.Number("count", log.LeftOut()); });
      Add(log[i]);
    }
  }

  std::string Take() { return std::move(m_text); }

private:
  template <class Item>
  static std::int64_t At(const Item& item) {
    return item.at.count();
  }
  static void AddLimit(Members<LineWriter>& line, const char* name, const std::string& limit) {
    if (limit.empty())
      line.Nothing(name);
    else
      line.Text(name, limit);
  }

  std::string m_text;
};

void AddScript(Lines& lines, const ScriptRecord& script) {
  lines.Add("script", [&](auto& line) {
    line.Text("script", script.script);
    if (script.verdict == Verdict::kNotRun)
      line.Nothing("begun");
    else
      line.Text("begun", IsoTime(script.begun));
  });
  lines.Add(script.output);
  for (const Measurement& measurement : script.measurements)
    lines.Add(measurement);
  for (const TimedAnswer& question : script.questions)
    lines.Add(question);
  lines.Add(script.traffic);
  lines.Add("end of script", [&](auto& line) {
    line.Text("script", script.script).Text("verdict", TextOf(script.verdict));
    AddCode(line, script);
    line.Text("reason", script.reason).Number("took_us", std::int64_t{script.took.count()});
    WriteValues(line.Name("values"), script);
  });
}

} // namespace

std::string MakeJsonLinesReport(const SessionRecord& session) {
  Lines lines;
  lines.Add("run", [&](auto& line) {
    line.Number("format", std::int64_t{1}).Text("program", session.program).Text("channel", session.channel);
    line.Text("begun", IsoTime(session.begun));
  });
  for (const ScriptRecord& script : session.scripts)
    AddScript(lines, script);
  lines.Add("end", [&](auto& line) { line.Number("code", std::int64_t{session.code}); });
  return lines.Take();
}

std::string MakeValuesFile(const SessionRecord& session) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
  writer.SetIndent(' ', 2);
  {
    Members whole(writer);
    whole.Number("code", std::int64_t{session.code}).Name("scripts").StartArray();
    for (const ScriptRecord& script : session.scripts) {
      Members members(writer);
      members.Text("script", script.script).Text("verdict", TextOf(script.verdict));
      AddCode(members, script);
      WriteValues(members.Name("values"), script);
    }
    writer.EndArray();
  }
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

} // namespace host
