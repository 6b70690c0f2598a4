// A device's end of the line as a device file describes it: commands in, answers out, states and values between.
#pragma once

#include "host/channel/sim/Console.h"
#include "host/channel/sim/DeviceConsole.h"
#include "host/channel/sim/description/AnswerQueue.h"
#include "host/channel/sim/description/DeviceDescription.h"

#include <optional>
#include <vector>

namespace host {

class DescribedConsole : public Console {
public:
  static constexpr std::size_t kLongestCommand = 1024; // bytes; a longer one is passed over
  static constexpr std::size_t kLongestValue = 4096;   // bytes; the rest is left out

  // The device begins its life `now`. `files` must outlive the console.
  DescribedConsole(ConsoleDescription description, const FileStore& files, Time now);

  void Write(Time now, std::string_view bytes) override;
  std::size_t Read(Time now, char* buffer, std::size_t capacity) override;

private:
  struct Timer {
    const Rule* rule;
    Time next;
  };

  // Says what was to be said unasked until now.
  void RunTimers(Time now);
  void TakeByte(Time now, char byte);
  // When the byte has completed a command, cuts its end off m_line.
  bool EndsCommand();
  void Obey(Time now, const std::string& command);
  // The first rule that holds for it; null: none.
  const Rule* FindRule(const std::string& command, Captures& captures) const;
  void ObeyLikeSim(Time now, const std::string& command);
  void Run(Time now, const Rule& rule, const Captures& captures);
  void Do(Time now, const Say& say, const Captures& captures);
  void Do(Time now, const SetValue& set, const Captures& captures);
  void Do(Time now, const AddToValue& add, const Captures& captures);
  void Do(Time now, const GoToState& go, const Captures& captures);
  void Put(Time now, std::string_view bytes, const Pace& pace);
  bool Holds(const Rule& rule) const { return rule.state.empty() || rule.state == m_state; }

  const ConsoleDescription m_is;
  DeviceConsole m_sim;
  AnswerQueue m_answers;
  std::string m_state;
  Values m_values;
  std::vector<Timer> m_timers;
  std::string m_line; // the beginning of the command that is arriving
  bool m_lineTooLong = false;
  std::uint64_t m_commands = 0;
  bool m_silent;
};

} // namespace host
