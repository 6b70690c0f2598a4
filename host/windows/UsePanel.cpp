#include "host/windows/UsePanel.h"

#include "host/windows/ControlText.h"
#include "host/windows/resource.h"

#include <cstdio>
#include <ctime>

namespace host {
namespace {

// A tool that only looks gives the channel back sooner, and would flicker.
constexpr std::chrono::milliseconds kShortUse{200};

std::string TimeOfDay(ChannelUse::WallClock::time_point time) {
  const std::time_t seconds = ChannelUse::WallClock::to_time_t(time);
  const std::tm* const local = std::localtime(&seconds);
  char text[16] = "";
  return local && std::strftime(text, sizeof text, "%H:%M:%S", local) != 0 ? text : "";
}

std::string Seconds(ChannelUse::WallClock::duration time) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", std::chrono::duration<double>(time).count());
  return text;
}

std::string Several(std::uint64_t count, const char* thing) {
  return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string TrafficText(const ChannelCounts& counts) {
  std::string text = Several(counts.sent, "byte") + " sent, " + Several(counts.received, "byte") + " received";
  return counts.files != 0 ? text + ", " + Several(counts.files, "file") : text;
}

std::string CallsText(const ChannelCounts& counts) {
  return std::to_string(counts.calls) + (counts.failed != 0 ? ", " + std::to_string(counts.failed) + " failed" : "");
}

} // namespace

void UsePanel::Refresh() {
  auto holder = m_notes.use.Holder();
  if (holder && ChannelUse::WallClock::now() - holder->since < kShortUse)
    holder.reset();
  NoteUse(holder);
  SetControlText(m_window, IDC_USE_HOLDER, holder ? holder->name + ", since " + TimeOfDay(holder->since) : "nobody");
  const ChannelCounts counts = m_notes.use.Counts();
  SetControlText(m_window, IDC_USE_TRAFFIC, TrafficText(counts));
  SetControlText(m_window, IDC_USE_CALLS, CallsText(counts));
}

void UsePanel::NoteUse(const std::optional<ChannelUse::Hold>& holder) {
  const std::uint64_t now = holder ? holder->number : 0;
  const std::uint64_t before = m_noted ? m_noted->number : 0;
  if (now == before)
    return;
  if (m_noted)
    m_notes.log.Add(LogTopic::kUse, m_noted->name + " has given the channel back after " +
                                        Seconds(m_notes.use.Released() - m_noted->since));
  if (holder)
    m_notes.log.Add(LogTopic::kUse, holder->name + " uses the channel since " + TimeOfDay(holder->since));
  m_noted = holder;
}

void UsePanel::ResetCounters() {
  m_notes.use.Reset();
  Refresh();
}

} // namespace host
