#include "host/channel/sim/description/AnswerQueue.h"

#include <algorithm>

namespace host {

void AnswerQueue::Add(Console::Time now, std::string_view bytes, const Pace& pace) {
  bytes = bytes.substr(0, kCapacity - m_size);
  m_free = std::max(now, m_free) + pace.delay;
  const std::size_t together = pace.pieceSize == 0 ? bytes.size() : pace.pieceSize;
  for (bool isFirst = true; !bytes.empty(); isFirst = false) {
    m_free += isFirst ? std::chrono::milliseconds(0) : pace.gap;
    const std::string_view piece = bytes.substr(0, together);
    bytes.remove_prefix(piece.size());
    m_size += piece.size();
    if (m_bytesPerSecond == 0) {
      m_pieces.push_back({m_free, std::string(piece)});
      continue;
    }
    for (const char byte : piece) {
      m_free += std::chrono::nanoseconds(std::nano::den / m_bytesPerSecond);
      m_pieces.push_back({m_free, std::string(1, byte)});
    }
  }
}

std::size_t AnswerQueue::Take(Console::Time now, char* buffer, std::size_t capacity) {
  std::size_t taken = 0;
  while (taken < capacity && !m_pieces.empty() && m_pieces.front().due <= now) {
    std::string& piece = m_pieces.front().bytes;
    const std::size_t count = piece.copy(buffer + taken, capacity - taken);
    taken += count;
    if (count == piece.size())
      m_pieces.pop_front();
    else
      piece.erase(0, count);
  }
  m_size -= taken;
  return taken;
}

} // namespace host
