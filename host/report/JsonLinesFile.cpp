#include "host/report/JsonLinesFile.h"

#include "host/report/JsonMembers.h"
#include "host/report/ReportText.h"
#include "host/report/Verdict.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <utility>

namespace host {
namespace {

constexpr std::string_view kBeginning = R"({"record":"run",)";

template <class Item>
std::int64_t At(const Item& item) {
  return item.at.count();
}

template <class Item>
std::int64_t Took(const Item& item) {
  return item.took.count();
}

} // namespace

tl::expected<std::unique_ptr<JsonLinesFile>, std::string>
JsonLinesFile::Open(const std::string& path, const SessionRecord& session,
                    const std::function<void(const std::string&)>& tell) {
  auto file = SoleFile::Open(path);
  if (!file)
    return tl::unexpected("cannot write the report " + path + ": " + file.error());
  if (const std::string beginning = file->Beginning(64); !beginning.empty() && !beginning.starts_with(kBeginning))
    return tl::unexpected(path + " is not a report in JSON Lines, and is not replaced by one");
  if (!file->Clear())
    return tl::unexpected("cannot write the report " + path);
  std::unique_ptr<JsonLinesFile> report(new JsonLinesFile(std::move(*file), [path, tell](const std::string& reason) {
    tell("the report " + path + " cannot be written any more: " + reason + "; the run goes on without it");
  }));
  report->AddLine("run", [&](auto& line) {
    line.Number("format", std::int64_t{1}).Text("program", session.program).Text("channel", session.channel);
    line.Text("begun", IsoTime(session.begun));
  });
  return report;
}

JsonLinesFile::JsonLinesFile(SoleFile file, std::function<void(const std::string&)> onFailure)
    : m_file(std::move(file), std::chrono::milliseconds(0), std::move(onFailure)) {}

template <class Fill>
void JsonLinesFile::AddLine(const char* record, Fill fill) noexcept {
  m_file.Add([&](std::string& lines) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    {
      JsonMembers members(writer);
      members.Text("record", record);
      fill(members);
    }
    lines.append(buffer.GetString(), buffer.GetSize()).append(1, '\n');
  });
}

void JsonLinesFile::Begin(const ScriptRecord& script) {
  const bool runs = script.begun != decltype(script.begun){};
  AddLine("script", [&](auto& line) {
    line.Text("script", script.script).TextOrNull("begun", runs ? IsoTime(script.begun) : std::string());
  });
}

void JsonLinesFile::Add(const OutputLine& output) {
  AddLine("output", [&](auto& line) { line.Number("at_us", At(output)).Text("text", output.text); });
}

// Numbers as texts: they are exact, whatever reads them.
void JsonLinesFile::Add(const Measurement& measurement) {
  AddLine("measurement", [&](auto& line) {
    line.Number("at_us", At(measurement)).Text("name", measurement.name).Text("value", measurement.value);
    line.TextOrNull("low", measurement.low).TextOrNull("high", measurement.high);
    line.Text("unit", measurement.unit).Truth("passed", measurement.passed);
  });
}

void JsonLinesFile::Add(const TimedAnswer& timed) {
  AddLine("question", [&](auto& line) {
    const AnsweredQuestion& answered = timed.answered;
    const Question& question = answered.question;
    line.Number("at_us", At(timed)).Number("took_us", Took(timed));
    line.Text("caption", question.caption).Text("prompt", question.prompt);
    if (!question.limits.empty())
      line.Text("limits", question.limits);
    if (question.kind == QuestionKind::kChoice)
      line.List("items", question.items);
    if (answered.answer)
      line.Text("answer", *answered.answer);
    else
      line.Nothing("answer");
    line.Text("by", answered.by);
  });
}

void JsonLinesFile::Add(const TrafficEntry& entry) {
  AddLine("traffic", [&](auto& line) {
    line.Number("at_us", At(entry)).Number("took_us", Took(entry));
    line.Text("operation", entry.operation).Number("answer", entry.answer);
    line.Number("bytes", entry.bytes).Text("data", entry.data);
  });
}

void JsonLinesFile::End(const ScriptRecord& script) {
  AddLine("end of script", [&](auto& line) {
    line.Text("script", script.script).Text("verdict", TextOf(script.verdict));
    AddCode(line, script);
    line.Text("reason", script.reason).Number("took_us", Took(script));
    WriteValues(line.Name("values"), script);
  });
}

void JsonLinesFile::End(const SessionRecord& session) {
  AddLine("end", [&](auto& line) { line.Number("code", std::int64_t{session.code}); });
}

} // namespace host
