#include "host/notes/SessionLog.h"

#include "host/support/Files.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <new>
#include <system_error>

namespace host {
namespace {

// Line ends of a text that has several, and what else would tear a line apart.
std::string OneLine(std::string_view text) {
  constexpr std::string_view kMore = " [...]";
  std::string line(text.substr(0, SessionLog::kLongest));
  if (line.size() < text.size())
    line += kMore;
  std::replace_if(
      line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
  return line;
}

} // namespace

std::string SessionLog::Line::TimeText() const {
  const auto sinceEpoch = time.time_since_epoch();
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count() % 1000;
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  const std::tm* const local = std::localtime(&seconds); // Windows has one for each thread
  char date[40] = "";
  if (!local || std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", local) == 0)
    return date;
  char fraction[8] = "";
  std::snprintf(fraction, sizeof fraction, ".%03d", static_cast<int>(milliseconds));
  return std::string(date) + fraction;
}

tl::expected<void, std::string> SessionLog::OpenFile(const std::string& path) {
  const std::lock_guard guard(m_mutex);
  if (IsAnythingAt(path) && !IsRegularFile(path))
    return tl::unexpected("cannot write the log " + path + ": it is no file");
  m_file.reset(std::fopen(SystemPath(path).c_str(), "ab"));
  if (!m_file)
    return tl::unexpected("cannot write the log " + path + ": " + std::generic_category().message(errno));
  m_path = path;
  for (std::uint64_t number = m_lines.First(); number < m_lines.End(); ++number)
    WriteLine(*m_lines.At(number));
  return {};
}

void SessionLog::Add(LogTopic topic, std::string_view text) noexcept {
  try {
    Line line{std::chrono::system_clock::now(), topic, OneLine(text)};
    const std::lock_guard guard(m_mutex);
    WriteLine(line);
    Keep(std::move(line));
  } catch (const std::bad_alloc&) {
    // What it tells about matters more.
  }
}

void SessionLog::Flush() noexcept {
  try {
    const std::lock_guard guard(m_mutex);
    if (!m_file || (std::fflush(m_file.get()) == 0 && std::ferror(m_file.get()) == 0))
      return;
    const std::string reason = std::generic_category().message(errno);
    m_file.reset();
    Keep({std::chrono::system_clock::now(), LogTopic::kError,
          "the log " + m_path + " cannot be written any more: " + reason});
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

void SessionLog::Keep(Line line) {
  m_lines.Add(std::move(line));
  ++m_changes;
}

void SessionLog::WriteLine(const Line& line) {
  if (m_file)
    std::fprintf(m_file.get(), "%s  %-8s  %s\r\n", line.TimeText().c_str(), line.TopicName().data(), line.text.c_str());
}

std::uint64_t SessionLog::Changes() const {
  const std::lock_guard guard(m_mutex);
  return m_changes;
}

RowRing<SessionLog::Line> SessionLog::Rows() const {
  const std::lock_guard guard(m_mutex);
  return m_lines;
}

void SessionLog::Visit(std::uint64_t from,
                       const std::function<void(std::uint64_t number, const Line& line)>& visit) const {
  const std::lock_guard guard(m_mutex);
  for (std::uint64_t number = std::max(from, m_lines.First()); number < m_lines.End(); ++number)
    visit(number, *m_lines.At(number));
}

std::uint64_t SessionLog::First() const {
  const std::lock_guard guard(m_mutex);
  return m_lines.First();
}

SessionLog::Line SessionLog::At(std::uint64_t number) const {
  const std::lock_guard guard(m_mutex);
  const Line* const line = m_lines.At(number);
  return line ? *line : Line();
}

void SessionLog::Clear() {
  const std::lock_guard guard(m_mutex);
  m_lines.Clear();
  ++m_changes;
}

} // namespace host
