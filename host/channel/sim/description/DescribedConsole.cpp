#include "host/channel/sim/description/DescribedConsole.h"

#include "host/support/Text.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

// A device that nobody has looked at for long leaves lines out, instead of saying hours of them at once.
constexpr unsigned kMostCatchUp = 10000;

constexpr std::int64_t kLargestCount = 1000000000000000000; // beyond, a value does not change

} // namespace

DescribedConsole::DescribedConsole(ConsoleDescription description, const FileStore& files, Time now)
    : m_is(std::move(description)), m_sim(files), m_answers(now, m_is.bytesPerSecond), m_state(m_is.state),
      m_values(m_is.values), m_silent(m_is.silentAfter == 0U) {
  for (const Rule& rule : m_is.rules) {
    if (rule.trigger == Rule::Trigger::kEvery)
      m_timers.push_back({&rule, now + rule.interval});
    else if (rule.trigger == Rule::Trigger::kStart)
      Run(now, rule, {});
  }
  Put(now, m_is.prompt, {});
}

void DescribedConsole::Write(Time now, std::string_view bytes) {
  RunTimers(now);
  for (const char byte : bytes)
    TakeByte(now, byte);
}

std::size_t DescribedConsole::Read(Time now, char* buffer, std::size_t capacity) {
  RunTimers(now);
  return m_answers.Take(now, buffer, capacity);
}

void DescribedConsole::RunTimers(Time now) {
  const auto soonest = [this] {
    return std::min_element(m_timers.begin(), m_timers.end(),
                            [](const Timer& a, const Timer& b) { return a.next < b.next; });
  };
  if (m_timers.empty())
    return;
  unsigned count = 0;
  for (auto timer = soonest(); timer->next <= now; timer = soonest()) {
    const Time due = timer->next;
    timer->next = ++count <= kMostCatchUp ? due + timer->rule->interval : now + timer->rule->interval;
    if (Holds(*timer->rule))
      Run(due, *timer->rule, {});
  }
}

void DescribedConsole::TakeByte(Time now, char byte) {
  if (m_is.echoes)
    Put(now, {&byte, 1}, {});
  m_line += byte;
  if (!EndsCommand()) {
    if (m_line.size() > kLongestCommand + m_is.commandEnding.size()) {
      m_line.erase(0, m_line.size() - m_is.commandEnding.size()); // its end may have begun
      m_lineTooLong = true;
    }
    return;
  }
  const std::string command = std::exchange(m_line, {});
  if (std::exchange(m_lineTooLong, false) || (command.empty() && m_is.commandEnding.empty()))
    return;
  ++m_commands;
  Obey(now, command);
  Put(now, m_is.prompt, {});
  m_silent = m_is.silentAfter && m_commands >= *m_is.silentAfter;
}

bool DescribedConsole::EndsCommand() {
  const bool ends = m_is.commandEnding.empty() ? m_line.back() == '\r' || m_line.back() == '\n'
                                               : m_line.ends_with(m_is.commandEnding);
  if (ends)
    m_line.resize(m_line.size() - std::max<std::size_t>(m_is.commandEnding.size(), 1));
  return ends;
}

void DescribedConsole::Obey(Time now, const std::string& command) {
  Captures captures;
  if (const Rule* const rule = FindRule(command, captures))
    Run(now, *rule, captures);
  else if (m_is.isLikeSim)
    ObeyLikeSim(now, command);
}

const Rule* DescribedConsole::FindRule(const std::string& command, Captures& captures) const {
  const Rule* otherwise = nullptr;
  for (const Rule& rule : m_is.rules) {
    if (!Holds(rule))
      continue;
    if (rule.trigger == Rule::Trigger::kCommand && rule.pattern.Matches(command, m_is.ignoresCase, captures))
      return &rule;
    if (rule.trigger == Rule::Trigger::kOtherwise && !otherwise)
      otherwise = &rule;
  }
  captures.clear();
  return otherwise;
}

void DescribedConsole::ObeyLikeSim(Time now, const std::string& command) {
  m_sim.Write(now, command + "\n");
  char answer[DeviceConsole::kAnswerCapacity];
  const std::size_t size = m_sim.Read(now, answer, sizeof answer);
  Put(now, {answer, size}, m_is.pace);
}

void DescribedConsole::Run(Time now, const Rule& rule, const Captures& captures) {
  for (const Action& action : rule.actions)
    std::visit([&](const auto& what) { Do(now, what, captures); }, action);
}

void DescribedConsole::Do(Time now, const Say& say, const Captures& captures) {
  std::string text = say.text.Fill(m_values, captures);
  if (say.endsLine)
    text += m_is.answerEnding;
  Put(now, text, say.pace.value_or(m_is.pace));
}

void DescribedConsole::Do(Time, const SetValue& set, const Captures& captures) {
  std::string text = set.text.Fill(m_values, captures).substr(0, kLongestValue);
  m_values[set.place.KeyIn(m_values, captures)] = std::move(text);
}

void DescribedConsole::Do(Time, const AddToValue& add, const Captures& captures) {
  const std::string key = add.place.KeyIn(m_values, captures);
  const auto known = m_values.find(key);
  std::int64_t number = 0; // a value that is no number counts from there
  ParseNumber(known != m_values.end() ? known->second : m_values[add.place.name + "[]"], number);
  if (number <= kLargestCount && number >= -kLargestCount)
    m_values[key] = std::to_string(number + add.number);
}

void DescribedConsole::Do(Time, const GoToState& go, const Captures&) {
  m_state = go.state;
}

void DescribedConsole::Put(Time now, std::string_view bytes, const Pace& pace) {
  if (!m_silent)
    m_answers.Add(now, bytes, pace);
}

} // namespace host
