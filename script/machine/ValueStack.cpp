#include "script/machine/ValueStack.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {
constexpr std::size_t kFirstPiece = 192; // slots: most scripts need no more, and each run pays for them
constexpr std::size_t kLargestPiece = std::size_t{1} << 18;
} // namespace

void ValueStack::AddPiece(std::size_t count) {
  const std::size_t usual = m_pieces.empty() ? kFirstPiece : std::min(m_pieces.back().count * 4, kLargestPiece);
  const std::size_t size = std::max(usual, count);
  if (m_spare.count < size) {
    if (m_bytes + size * sizeof(CONXScriptVariable) > kMostBytes)
      throw std::bad_alloc();
    m_spare = {std::make_unique<CONXScriptVariable[]>(size), size};
  }
  m_pieces.push_back(std::move(m_spare));
  m_spare = {nullptr, 0};
  m_bytes += m_pieces.back().count * sizeof(CONXScriptVariable);
}

void ValueStack::DropPiece() {
  m_bytes -= m_pieces.back().count * sizeof(CONXScriptVariable);
  m_spare = std::move(m_pieces.back());
  m_pieces.pop_back();
}
