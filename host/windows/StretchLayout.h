// Keeps controls at their distance from a window's right edge.
#pragma once

#include <initializer_list>
#include <vector>
#include <windows.h>

namespace host {

class StretchLayout {
public:
  // Takes the distances as they are now. The first controls grow with the window, the others move with its edge.
  void Attach(HWND window, std::initializer_list<int> growing, std::initializer_list<int> moving);
  void Apply() const;

private:
  enum class Stretch { kGrows, kMoves };
  struct Item {
    HWND control;
    RECT place; // in the window, when attached
    int right;  // from the control's right edge to the window's
    Stretch stretch;
  };
  void Add(int control, Stretch stretch);

  HWND m_window = nullptr;
  std::vector<Item> m_items;
};

} // namespace host
