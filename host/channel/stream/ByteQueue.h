// Bytes on their way from one thread to another. Not guarded.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace host {

class ByteQueue {
public:
  std::size_t Size() const { return m_bytes.size() - m_taken; }

  void Append(std::string_view bytes) {
    // Only once half of the memory is behind the front, so that a byte is moved once at most on average.
    if (m_taken > m_bytes.size() / 2) {
      m_bytes.erase(0, m_taken);
      m_taken = 0;
    }
    m_bytes.append(bytes);
  }

  // Moves up to `capacity` bytes from the front to `buffer`; returns their number.
  std::size_t Take(char* buffer, std::size_t capacity) {
    const std::size_t count = m_bytes.copy(buffer, capacity, m_taken);
    m_taken += count;
    return count;
  }

private:
  std::string m_bytes;
  std::size_t m_taken = 0; // at the front
};

} // namespace host
