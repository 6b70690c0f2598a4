#include "host/channel/stream/Pacer.h"

namespace host {
namespace {

// The length of the line end at the front; 0 when there is none.
std::size_t LineEndAt(std::string_view text) {
  if (text.starts_with("\r\n"))
    return 2;
  return text.starts_with('\r') || text.starts_with('\n') ? 1 : 0;
}

} // namespace

std::string_view Pacer::LetThrough(std::string_view unsent, LinkClock::time_point now) {
  if (m_pace.IsFree())
    return unsent;
  while (m_through < unsent.size() && !IsHeld() && now >= m_next) {
    const std::string_view waiting = unsent.substr(m_through);
    const std::size_t piece = PieceOf(waiting);
    // The first half of a line end has its pause as a character.
    const bool endsLine = LineEndAt(waiting.substr(piece - 1)) == 1;
    m_through += piece;
    m_next = now + piece * m_pace.characterTime + (endsLine ? m_pace.LongestPause() : m_pace.afterCharacter);
  }
  return unsent.substr(0, m_through);
}

LinkClock::time_point Pacer::NextTime(std::string_view unsent) const {
  return m_pace.IsFree() || IsHeld() || m_through >= unsent.size() ? LinkClock::time_point::max() : m_next;
}

// What goes out without a pause in it; not empty.
std::size_t Pacer::PieceOf(std::string_view waiting) const {
  if (m_pace.afterCharacter.count() != 0)
    return 1;
  const std::size_t end = waiting.find_first_of("\r\n");
  return end == std::string_view::npos ? waiting.size() : end + LineEndAt(waiting.substr(end));
}

} // namespace host
