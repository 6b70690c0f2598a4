// The XML that build servers read: a suite for each script, in it the script itself and each measurement as a case.
#include "host/report/ReportText.h"
#include "host/report/Reports.h"
#include "host/report/Verdict.h"

#include <algorithm>

namespace host {
namespace {

std::string Attribute(const char* name, std::string_view value) {
  return std::string(" ") + name + "=\"" + Escaped(value) + "\"";
}

struct Counts {
  std::size_t tests = 0;
  std::size_t failures = 0;
  std::size_t errors = 0;
  std::size_t skipped = 0;

  Counts& operator+=(const Counts& other) {
    tests += other.tests;
    failures += other.failures;
    errors += other.errors;
    skipped += other.skipped;
    return *this;
  }
};

bool HasFailed(const Measurement& measurement) {
  return !measurement.passed;
}

Counts CountsOf(const ScriptRecord& script) {
  Counts counts;
  counts.tests = 1 + script.measurements.size();
  counts.failures =
      static_cast<std::size_t>(std::count_if(script.measurements.begin(), script.measurements.end(), HasFailed));
  counts.failures += script.verdict == Verdict::kFailed ? 1 : 0;
  counts.errors = script.verdict == Verdict::kNotTested ? 1 : 0;
  counts.skipped = script.verdict == Verdict::kNotRun ? 1 : 0;
  return counts;
}

std::string Attributes(const Counts& counts) {
  return Attribute("tests", std::to_string(counts.tests)) + Attribute("failures", std::to_string(counts.failures)) +
         Attribute("errors", std::to_string(counts.errors)) + Attribute("skipped", std::to_string(counts.skipped));
}

std::string Properties(const ScriptRecord& script) {
  if (script.values.empty())
    return {};
  std::string text = "    <properties>\n";
  for (const NamedValue& value : script.values)
    text += "      <property" + Attribute("name", value.name) + Attribute("value", TextOf(value)) + "/>\n";
  return text + "    </properties>\n";
}

std::string OutputOf(const ScriptRecord& script) {
  if (script.output.IsEmpty())
    return {};
  std::string text = "      <system-out>";
  for (std::size_t i = 0; i < script.output.Size(); ++i) {
    if (i == script.output.LeftOutAt() && script.output.LeftOut() != 0)
      text += "[" + std::to_string(script.output.LeftOut()) + " lines left out]\n";
    text += Escaped(script.output[i].text) + "\n";
  }
  return text + "</system-out>\n";
}

std::string ScriptCase(const ScriptRecord& script) {
  std::string text = "    <testcase" + Attribute("name", script.script) + Attribute("classname", script.script) +
                     Attribute("time", Seconds(script.took)) + ">\n";
  const std::string type = Attribute("type", "code " + std::to_string(script.code));
  if (script.verdict == Verdict::kFailed)
    text += "      <failure" + Attribute("message", script.reason) + type + "/>\n";
  else if (script.verdict == Verdict::kNotTested)
    text += "      <error" + Attribute("message", script.reason) + type + "/>\n";
  else if (script.verdict == Verdict::kNotRun)
    text += "      <skipped" + Attribute("message", "not run") + "/>\n";
  return text + OutputOf(script) + "    </testcase>\n";
}

std::string MeasurementCase(const ScriptRecord& script, const Measurement& measurement) {
  std::string text = "    <testcase" + Attribute("name", measurement.name) + Attribute("classname", script.script) +
                     Attribute("time", "0") + ">\n";
  const std::string told = ValueOf(measurement) + ", limits " + LimitsOf(measurement);
  text += HasFailed(measurement) ? "      <failure" + Attribute("message", told) + Attribute("type", "limit") + "/>\n"
                                 : "      <system-out>" + Escaped(told) + "</system-out>\n";
  return text + "    </testcase>\n";
}

std::string Suite(const ScriptRecord& script, const SessionRecord& session) {
  const auto begun = script.verdict == Verdict::kNotRun ? session.begun : script.begun;
  std::string text = "  <testsuite" + Attribute("name", script.script) + Attributes(CountsOf(script)) +
                     Attribute("time", Seconds(script.took)) + Attribute("timestamp", IsoTime(begun)) + ">\n" +
                     Properties(script) + ScriptCase(script);
  for (const Measurement& measurement : script.measurements)
    text += MeasurementCase(script, measurement);
  return text + "  </testsuite>\n";
}

} // namespace

std::string MakeJUnitReport(const SessionRecord& session) {
  Counts counts;
  Microseconds took{};
  for (const ScriptRecord& script : session.scripts) {
    counts += CountsOf(script);
    took += script.took;
  }
  std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites" + Attribute("name", session.program) +
                     Attributes(counts) + Attribute("time", Seconds(took)) + ">\n";
  for (const ScriptRecord& script : session.scripts)
    text += Suite(script, session);
  return text + "</testsuites>\n";
}

} // namespace host
