// A page for people, in one file that needs nothing else: verdicts first, then what was measured, asked, sent and
// printed.
#include "host/report/HtmlChart.h"
#include "host/report/HtmlStyle.h"
#include "host/report/ReportText.h"
#include "host/report/Reports.h"
#include "host/report/Verdict.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <initializer_list>

namespace host {
namespace {

// More lines of traffic nobody reads; JSON Lines has them all.
constexpr std::size_t kTrafficRows = 1000;
constexpr std::size_t kLongestChoice = 200; // bytes
// More lines of output wait until somebody asks for them.
constexpr std::size_t kOpenLines = 200;

std::string Capitalised(std::string_view text) {
  std::string result(text);
  result.front() = static_cast<char>(result.front() - 'a' + 'A');
  return result;
}

const char* LookOf(Verdict verdict) {
  return verdict == Verdict::kPassed ? "good" : verdict == Verdict::kFailed ? "bad" : "other";
}

std::string Badge(const char* look, std::string_view text) {
  return std::string("<span class=\"verdict ") + look + "\">" + Escaped(text) + "</span>";
}

std::string Badge(Verdict verdict) {
  return Badge(LookOf(verdict), Capitalised(TextOf(verdict)));
}

std::string Cell(std::string_view html, const char* look = "") {
  return (*look != '\0' ? std::string("<td class=\"") + look + "\">" : std::string("<td>")) + std::string(html) +
         "</td>";
}

// A column of numbers has a ">" in front of its name.
std::string TableHead(std::initializer_list<const char*> names) {
  std::string text = "<div class=\"wide\"><table><thead><tr>";
  for (const char* const name : names) {
    const bool isNumber = *name == '>';
    text += std::string("<th scope=\"col\"") + (isNumber ? " class=\"number\">" : ">") + (name + isNumber) + "</th>";
  }
  return text + "</tr></thead><tbody>\n";
}

constexpr const char* kTableEnd = "</tbody></table></div>\n";

std::string ShortSeconds(Microseconds time) {
  char text[40];
  std::snprintf(text, sizeof text, "%.3f", static_cast<double>(time.count()) / 1e6);
  return text;
}

std::string LocalTime(std::chrono::system_clock::time_point time) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  char text[64];
  const std::tm* const local = std::localtime(&seconds);
  return local && std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", local) != 0 ? text : IsoTime(time);
}

std::string Head(const SessionRecord& session) {
  Microseconds took{};
  for (const ScriptRecord& script : session.scripts)
    took += script.took;
  return "<h1>" + Badge(VerdictOf(session.code)) + "</h1>\n<p>" + Escaped(LocalTime(session.begun)) + ", " +
         ShortSeconds(took) + " s, channel <code>" + Escaped(session.channel) + "</code>, exit code " +
         std::to_string(session.code) + " <span class=\"quiet\">(" + Escaped(session.program) + ")</span></p>\n";
}

std::string Anchor(std::size_t number) {
  return "script" + std::to_string(number);
}

std::string Overview(const SessionRecord& session) {
  std::string text = TableHead({"Script", "Verdict", ">Code", ">Seconds", "Measurements", "Why"});
  std::size_t number = 0;
  for (const ScriptRecord& script : session.scripts) {
    const auto failed = std::count_if(script.measurements.begin(), script.measurements.end(),
                                      [](const Measurement& measurement) { return !measurement.passed; });
    const std::string measured = script.measurements.empty()
                                     ? ""
                                     : std::to_string(script.measurements.size()) +
                                           (failed != 0 ? ", " + std::to_string(failed) + " failed" : "");
    const bool ran = script.verdict != Verdict::kNotRun;
    text += "<tr>" + Cell("<a href=\"#" + Anchor(number++) + "\">" + Escaped(script.script) + "</a>") +
            Cell(Badge(script.verdict)) + Cell(ran ? std::to_string(script.code) : "", "number") +
            Cell(ran ? ShortSeconds(script.took) : "", "number") + Cell(measured) +
            Cell(Escaped(script.reason), "long") + "</tr>\n";
  }
  return text + kTableEnd;
}

std::string Measurements(const ScriptRecord& script) {
  if (script.measurements.empty())
    return {};
  std::string text =
      "<h3>Measurements</h3>\n" + TableHead({"Name", ">Value", ">Limits", "Verdict", "Within the limits?"});
  for (const Measurement& measurement : script.measurements)
    text += "<tr>" + Cell(Escaped(measurement.name)) + Cell(Escaped(ValueOf(measurement)), "number") +
            Cell(Escaped(LimitsOf(measurement)), "number") +
            Cell(measurement.passed ? Badge("good", "PASS") : Badge("bad", "FAIL")) +
            Cell(MeasurementChart(measurement)) + "</tr>\n";
  return text + kTableEnd;
}

std::string Values(const ScriptRecord& script) {
  if (script.values.empty())
    return {};
  std::string text = "<h3>Variables</h3>\n" + TableHead({"Name", "Value after the run"});
  for (const NamedValue& value : script.values)
    text +=
        "<tr>" + Cell("<code>" + Escaped(value.name) + "</code>") + Cell(Escaped(TextOf(value)), "long") + "</tr>\n";
  return text + kTableEnd;
}

// What might have been answered; only some of many items.
std::string Choice(const Question& question) {
  std::string text = question.limits;
  for (const std::string& item : question.items) {
    if (text.size() > kLongestChoice) {
      text += ", and more";
      break;
    }
    text.append(text.empty() ? "one of " : ", ").append(item);
  }
  return text.empty() ? text : " <span class=\"quiet\">(" + Escaped(text) + ")</span>";
}

std::string Questions(const ScriptRecord& script) {
  if (script.questions.empty())
    return {};
  std::string text =
      "<h3>The user's answers</h3>\n" + TableHead({">Second", "Caption", "Question", "Answer", "By", ">Took, s"});
  for (const TimedAnswer& timed : script.questions) {
    const AnsweredQuestion& answered = timed.answered;
    text += "<tr>" + Cell(ShortSeconds(timed.at), "number") + Cell(Escaped(answered.question.caption)) +
            Cell(Escaped(answered.question.prompt) + Choice(answered.question), "long") +
            Cell(answered.answer ? Escaped(*answered.answer) : "<span class=\"quiet\">Cancel</span>") +
            Cell(Escaped(answered.by)) + Cell(ShortSeconds(timed.took), "number") + "</tr>\n";
  }
  return text + kTableEnd;
}

std::string LeftOut(std::uint64_t count) {
  return "<span class=\"quiet\">[" + std::to_string(count) + " left out]</span>";
}

std::string TrafficRow(const TrafficEntry& entry) {
  return "<tr>" + Cell(ShortSeconds(entry.at), "number") +
         Cell(entry.toDevice ? "<span class=\"key-out\">to device</span>"
                             : "<span class=\"key-in\">from device</span>") +
         Cell(Escaped(entry.operation)) + Cell(std::to_string(entry.bytes), "number") +
         Cell(entry.answer == 0 ? "" : Badge("bad", "answer " + std::to_string(entry.answer))) +
         Cell("<code>" + Escaped(entry.data) + "</code>", "long") + "</tr>\n";
}

std::string TrafficTable(const BoundedLog<TrafficEntry>& traffic) {
  std::string text = "<details><summary>Calls</summary>\n" +
                     TableHead({">Second", "Direction", "Operation", ">Bytes", "Result", "Data"});
  const std::size_t size = traffic.Size();
  const std::size_t hidden = size > kTrafficRows ? size - kTrafficRows : 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (i == kTrafficRows / 2 && hidden != 0) {
      text += "<tr><td colspan=\"6\">" + LeftOut(hidden + traffic.LeftOut()) + "</td></tr>\n";
      i += hidden;
    }
    text += TrafficRow(traffic[i]);
  }
  return text + kTableEnd + "</details>\n";
}

std::string Traffic(const ScriptRecord& script) {
  if (script.traffic.IsEmpty())
    return {};
  std::string key = "<p class=\"quiet\"><span class=\"key-out\">up: to the device</span>, "
                    "<span class=\"key-in\">down: from the device</span>, as high as the logarithm of the bytes";
  if (!script.questions.empty())
    key += "; behind it, when the user was asked";
  return "<h3>Traffic</h3>\n" + key + "</p>\n" + TrafficChart(script) + TrafficTable(script.traffic);
}

std::string Output(const ScriptRecord& script) {
  const std::size_t size = script.output.Size();
  if (size == 0)
    return {};
  std::string text = std::string("<details") + (size <= kOpenLines ? " open" : "") + "><summary>Output, " +
                     std::to_string(size + script.output.LeftOut()) + (size == 1 ? " line" : " lines") +
                     "</summary>\n<pre>";
  for (std::size_t i = 0; i < size; ++i) {
    if (i == script.output.LeftOutAt() && script.output.LeftOut() != 0)
      text += LeftOut(script.output.LeftOut()) + "\n";
    const OutputLine& line = script.output[i];
    text += "<i>" + ShortSeconds(line.at) + "</i> " + Escaped(line.text) + "\n";
  }
  return text + "</pre></details>\n";
}

std::string Section(const ScriptRecord& script, std::size_t number) {
  std::string text = "<section id=\"" + Anchor(number) + "\">\n<h2>" + Escaped(script.script) + " " +
                     Badge(script.verdict) + "</h2>\n";
  if (!script.reason.empty())
    text += "<p>" + Escaped(script.reason) + "</p>\n";
  return text + Measurements(script) + Values(script) + Questions(script) + Traffic(script) + Output(script) +
         "</section>\n";
}

} // namespace

std::string MakeHtmlReport(const SessionRecord& session) {
  std::string text = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">\n"
                     "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
                     "'unsafe-inline'\">\n<meta name=\"viewport\" content=\"width=device-width\">\n<title>" +
                     Capitalised(TextOf(VerdictOf(session.code))) + ": " + Escaped(session.scripts.front().script) +
                     "</title>\n<style>" + kHtmlStyle + "</style></head>\n<body>\n" + Head(session) + Overview(session);
  std::size_t number = 0;
  for (const ScriptRecord& script : session.scripts)
    text += Section(script, number++);
  return text + "</body></html>\n";
}

} // namespace host
