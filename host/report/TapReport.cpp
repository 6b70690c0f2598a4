// The Test Anything Protocol, version 13: a test point for each script, its measurements as a subtest.
#include "host/report/ReportText.h"
#include "host/report/Reports.h"
#include "host/report/Verdict.h"

namespace host {
namespace {

// One line, in which nothing is a directive.
std::string Description(std::string_view text) {
  std::string description;
  for (const char c : Visible(text)) {
    if (c == '#' || c == '\\')
      description += '\\';
    description += c == '\n' ? ' ' : c;
  }
  return description;
}

std::string Point(bool ok, std::size_t number, std::string_view description) {
  return (ok ? "ok " : "not ok ") + std::to_string(number) + " - " + Description(description) + "\n";
}

std::string Plan(std::size_t count) {
  return "1.." + std::to_string(count) + "\n";
}

// In YAML, as a text in quotation marks.
std::string Quotation(std::string_view text) {
  std::string result = "\"";
  for (const char c : Visible(text)) {
    if (c == '"' || c == '\\')
      result += '\\';
    result += c == '\n' ? ' ' : c;
  }
  return result + "\"";
}

std::string Subtest(const ScriptRecord& script) {
  if (script.measurements.empty())
    return {};
  std::string text = "# Subtest: " + Description(script.script) + "\n";
  std::size_t number = 0;
  for (const Measurement& measurement : script.measurements)
    text += "    " + Point(measurement.passed, ++number,
                           measurement.name + " = " + ValueOf(measurement) + ", " + LimitsOf(measurement));
  return text + "    " + Plan(number);
}

std::string PointOf(const ScriptRecord& script, std::size_t number) {
  if (script.verdict == Verdict::kNotRun)
    return "ok " + std::to_string(number) + " - " + Description(script.script) + " # SKIP not run\n";
  std::string text = Point(script.verdict == Verdict::kPassed, number, script.script);
  if (script.verdict == Verdict::kPassed)
    return text;
  return text + "  ---\n  verdict: " + std::string(TextOf(script.verdict)) +
         "\n  code: " + std::to_string(script.code) + "\n  message: " + Quotation(script.reason) + "\n  ...\n";
}

} // namespace

std::string MakeTapReport(const SessionRecord& session) {
  std::string text = "TAP version 13\n" + Plan(session.scripts.size());
  std::size_t number = 0;
  for (const ScriptRecord& script : session.scripts)
    text += Subtest(script) + PointOf(script, ++number);
  return text;
}

} // namespace host
