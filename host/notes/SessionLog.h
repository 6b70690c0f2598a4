// What happened at the windows, each thing with its time.
#pragma once

#include "host/notes/RowRing.h"

#include <tl/expected.hpp>

#include <array>
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

// What a line of the log is about.
enum class LogTopic { kProgram, kChannel, kUse, kScript, kOutput, kQuestion, kError };

struct LogTopicName {
  LogTopic topic;
  std::string_view name;
};
inline constexpr std::array kLogTopics = std::to_array<LogTopicName>({{LogTopic::kProgram, "program"},
                                                                      {LogTopic::kChannel, "channel"},
                                                                      {LogTopic::kUse, "use"},
                                                                      {LogTopic::kScript, "script"},
                                                                      {LogTopic::kOutput, "output"},
                                                                      {LogTopic::kQuestion, "question"},
                                                                      {LogTopic::kError, "error"}});

// Keeps the last lines and writes every line to a file, if there is one. [any thread]
class SessionLog {
public:
  static constexpr std::size_t kMostLines = 20000;
  static constexpr std::size_t kLongest = 1000; // bytes that are kept of a line

  struct Line {
    std::chrono::system_clock::time_point time;
    LogTopic topic{};
    std::string text; // without control characters

    std::string_view TopicName() const { return kLogTopics[static_cast<std::size_t>(topic)].name; }
    // Local, "2026-01-31 12:00:00.123".
    std::string TimeText() const;
  };
  using Row = Line;

  // From now on, and of what is there already, every line goes behind those of the file. Otherwise the reason.
  tl::expected<void, std::string> OpenFile(const std::string& path);

  // A line that does not fit into memory is left out.
  void Add(LogTopic topic, std::string_view text) noexcept;
  // Lines written shortly before reach the file now. One that cannot be written is told in the log, once.
  void Flush() noexcept;

  // Counts up whenever something changes.
  std::uint64_t Changes() const;
  // All lines that are kept, as they are now.
  RowRing<Line> Rows() const;
  // Calls `visit` for each line from that number on.
  void Visit(std::uint64_t from, const std::function<void(std::uint64_t number, const Line& line)>& visit) const;
  // Where the lines that are kept begin.
  std::uint64_t First() const;
  // A copy; an empty one when the line is not kept any more.
  Line At(std::uint64_t number) const;
  // Forgets the lines; the file stays.
  void Clear();

private:
  struct Closer {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  void Keep(Line line);
  void WriteLine(const Line& line);

  mutable std::mutex m_mutex; // guards the fields below
  RowRing<Line> m_lines{kMostLines};
  std::uint64_t m_changes = 0;
  std::unique_ptr<std::FILE, Closer> m_file;
  std::string m_path;
};

} // namespace host
