// The memory of a machine's frames: slots that never move while they are used.
//
// It grows by pieces; a frame lies within one piece. Above the running frame no slot holds anything, in it a slot's tag
// says "text", "reference" or "function" only where one is; so whatever is left when a run fails can be released.
#pragma once

#include "script/value/CONXScriptVariable.h"

#include <cstddef>
#include <memory>
#include <vector>

class ValueStack {
public:
  // What all pieces take together at most. A run that needs more ends with code 1.
  static constexpr std::size_t kMostBytes = std::size_t{224} << 20;

  ValueStack() { AddPiece(0); }
  ~ValueStack() = default;
  ValueStack(const ValueStack&) = delete;
  ValueStack& operator=(const ValueStack&) = delete;

  CONXScriptVariable* Begin() { return m_pieces.back().slots.get(); }
  // Behind the last slot of the current piece.
  CONXScriptVariable* End() { return Begin() + m_pieces.back().count; }
  // Goes over to a new piece with room for `count` slots. Throws std::bad_alloc, also where the stack may not grow.
  void AddPiece(std::size_t count);
  // Back to the piece before, whose slots are as they were.
  void DropPiece();

private:
  struct Piece {
    std::unique_ptr<CONXScriptVariable[]> slots;
    std::size_t count;
  };

  std::vector<Piece> m_pieces;
  Piece m_spare{nullptr, 0}; // the piece that was dropped last, so that calls across the border cost little
  std::size_t m_bytes = 0;
};
