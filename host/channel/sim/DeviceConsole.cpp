#include "host/channel/sim/DeviceConsole.h"

#include "host/channel/sim/FileStore.h"
#include "host/support/Crc32.h"
#include "host/support/Text.h"

#include <algorithm>
#include <cstdio>

namespace host {
namespace {

struct Words {
  std::string_view first;
  std::string_view rest;
};

// Splits at the first run of blanks.
Words SplitFirstWord(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const std::string_view first = text.substr(0, text.find(' '));
  text.remove_prefix(first.size());
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return {first, text};
}

// At most `N` - 1 bytes of formatted text.
template <std::size_t N = 96, class... Values>
std::string Format(const char* format, Values... values) {
  char text[N];
  std::snprintf(text, N, format, values...);
  return text;
}

std::string Printable(std::string_view text) {
  std::string result(text);
  std::replace_if(
      result.begin(), result.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, '?');
  return result;
}

} // namespace

const DeviceConsole::Command DeviceConsole::kCommands[] = {
    {"help", "help            this list", &DeviceConsole::Help},
    {"ver", "ver             firmware version and loaded logic", &DeviceConsole::Version},
    {"id", "id              instrument and serial number", &DeviceConsole::Identity},
    {"echo", "echo TEXT       answers TEXT", &DeviceConsole::Echo},
    {"adc", "adc N           reads analog input N (0 to 7), which settles to output N", &DeviceConsole::Adc},
    {"dac", "dac N [VALUE]   shows or sets analog output N (0 to 4095)", &DeviceConsole::Dac},
    {"led", "led [on|off]    shows or switches the light", &DeviceConsole::Led},
    {"temp", "temp            temperature in degrees Celsius", &DeviceConsole::Temperature},
    {"dir", "dir             stored files: id, type, bytes", &DeviceConsole::ListFiles},
    {"crc", "crc ID          CRC-32 of a stored file", &DeviceConsole::FileCrc},
    {"lost", "lost            bytes of answers that were lost because nobody read them", &DeviceConsole::Lost},
};

DeviceConsole::DeviceConsole(const FileStore& files) : m_files(files) {
  for (std::size_t i = 0; i < m_loops.size(); ++i) {
    const auto value = static_cast<std::int32_t>(400 + 450 * i);
    m_loops[i] = {value, value};
  }
}

void DeviceConsole::Write(Time, std::string_view bytes) {
  for (const char c : bytes) {
    if (c == '\r' || c == '\n') {
      if (m_lineTooLong)
        Answer("error: line too long");
      else if (!m_line.empty())
        RunLine(m_line);
      m_line.clear();
      m_lineTooLong = false;
    } else if (m_line.size() < kLongestLine) {
      m_line += c;
    } else {
      m_lineTooLong = true;
    }
  }
}

std::size_t DeviceConsole::Read(Time, char* buffer, std::size_t capacity) {
  const std::size_t count = m_answers.copy(buffer, capacity);
  m_answers.erase(0, count);
  return count;
}

void DeviceConsole::RunLine(std::string_view line) {
  const Words words = SplitFirstWord(line);
  if (words.first.empty())
    return;
  for (const Command& command : kCommands) {
    if (EqualIgnoringCase(words.first, command.name))
      return (this->*command.run)(words.rest);
  }
  Answer("error: unknown command " + Quoted(Printable(words.first)) + ", try help");
}

void DeviceConsole::Answer(std::string_view line) {
  Queue(line);
  Queue("\r\n");
}

void DeviceConsole::Queue(std::string_view bytes) {
  const std::size_t room = std::min(kAnswerCapacity - m_answers.size(), bytes.size());
  m_answers.append(bytes.substr(0, room));
  m_lost += bytes.size() - room;
}

DeviceConsole::AnalogLoop* DeviceConsole::FindLoop(std::string_view number) {
  std::size_t index = 0;
  if (ParseNumber(number, index) && index < m_loops.size())
    return &m_loops[index];
  Answer("error: channels are 0 to 7");
  return nullptr;
}

void DeviceConsole::Help(std::string_view) {
  for (const Command& command : kCommands)
    Answer(command.usage);
}

void DeviceConsole::Version(std::string_view) {
  const auto& logic = m_files.LoadedLogic();
  if (!logic)
    return Answer("firmware 1.0, no logic");
  Answer(Format("firmware 1.0, logic of %llu bytes, CRC-32 %08X", static_cast<unsigned long long>(logic->size),
                static_cast<unsigned>(logic->crc)));
}

void DeviceConsole::Identity(std::string_view) {
  Answer("simulated device, serial number 1");
}

void DeviceConsole::Echo(std::string_view argument) {
  Answer(argument);
}

void DeviceConsole::Adc(std::string_view argument) {
  AnalogLoop* loop = FindLoop(argument);
  if (!loop)
    return;
  const std::int32_t left = loop->output - loop->input;
  loop->input += (left + (left > 0) - (left < 0)) / 2;
  Answer(std::to_string(loop->input));
}

void DeviceConsole::Dac(std::string_view argument) {
  const Words words = SplitFirstWord(argument);
  AnalogLoop* loop = FindLoop(words.first);
  if (!loop)
    return;
  if (words.rest.empty())
    return Answer(std::to_string(loop->output));
  std::int32_t value = 0;
  if (!ParseNumber(words.rest, value) || value < 0 || value > 4095)
    return Answer("error: values are 0 to 4095");
  loop->output = value;
  Answer("ok");
}

void DeviceConsole::Led(std::string_view argument) {
  if (argument.empty())
    return Answer(m_ledOn ? "on" : "off");
  const bool on = EqualIgnoringCase(argument, "on");
  if (!on && !EqualIgnoringCase(argument, "off"))
    return Answer("error: expected on or off");
  m_ledOn = on;
  Answer("ok");
}

void DeviceConsole::Temperature(std::string_view) {
  Answer(m_ledOn ? "24.00" : "23.50");
}

void DeviceConsole::ListFiles(std::string_view) {
  for (const auto& [id, file] : m_files.Files())
    Answer(Format("%3u %3u %10zu", static_cast<unsigned>(id), static_cast<unsigned>(file.type), file.bytes.size()));
  Answer(Format("%zu files, %llu of %u blocks free", m_files.Files().size(),
                static_cast<unsigned long long>(m_files.Blocks() - m_files.UsedBlocks()),
                static_cast<unsigned>(m_files.Blocks())));
}

void DeviceConsole::FileCrc(std::string_view argument) {
  std::uint8_t id = 0;
  const auto file = ParseNumber(argument, id) ? m_files.Files().find(id) : m_files.Files().end();
  if (file == m_files.Files().end())
    return Answer("error: no such file");
  Answer(Format("%08X", static_cast<unsigned>(Crc32(file->second.bytes))));
}

void DeviceConsole::Lost(std::string_view) {
  Answer(std::to_string(m_lost));
}

} // namespace host
