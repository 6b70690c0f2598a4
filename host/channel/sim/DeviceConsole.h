// The simulated instrument's text console: reads command lines, answers with lines.
//
// A line ends with CR or LF; empty lines (so also the LF of CR LF) are passed over. Every command answers with at least
// one line that ends with CR LF; there is no prompt and no echo. All values are the same in every run, and nothing
// takes time.
#pragma once

#include "host/channel/sim/Console.h"

#include <array>
#include <cstdint>
#include <string>

namespace host {

class FileStore;

// [one thread at a time]
class DeviceConsole : public Console {
public:
  static constexpr std::size_t kLongestLine = 256;     // bytes; longer lines are answered with an error
  static constexpr std::size_t kAnswerCapacity = 4096; // bytes that wait to be read; what comes on top is lost

  // `files` must outlive the console.
  explicit DeviceConsole(const FileStore& files);

  void Write(Time now, std::string_view bytes) override;
  std::size_t Read(Time now, char* buffer, std::size_t capacity) override;

private:
  struct Command {
    std::string_view name;
    std::string_view usage;
    void (DeviceConsole::*run)(std::string_view argument);
  };
  static const Command kCommands[];

  // An analog input that follows the output wired to it: each reading covers half of the way that is left.
  struct AnalogLoop {
    std::int32_t output; // 0 to 4095, both
    std::int32_t input;
  };

  void RunLine(std::string_view line);
  void Answer(std::string_view line);
  void Queue(std::string_view bytes);
  AnalogLoop* FindLoop(std::string_view number); // null, and the error is answered, when there is no such one

  void Help(std::string_view argument);
  void Version(std::string_view argument);
  void Identity(std::string_view argument);
  void Echo(std::string_view argument);
  void Adc(std::string_view argument);
  void Dac(std::string_view argument);
  void Led(std::string_view argument);
  void Temperature(std::string_view argument);
  void ListFiles(std::string_view argument);
  void FileCrc(std::string_view argument);
  void Lost(std::string_view argument);

  const FileStore& m_files;
  std::string m_line; // the beginning of the line that is arriving
  bool m_lineTooLong = false;
  std::string m_answers;    // not yet read
  std::uint64_t m_lost = 0; // bytes of answers that found no room
  bool m_ledOn = false;
  std::array<AnalogLoop, 8> m_loops;
};

} // namespace host
