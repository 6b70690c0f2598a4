#include "host/windows/StretchLayout.h"

namespace host {

void StretchLayout::Attach(HWND window, std::initializer_list<int> growing, std::initializer_list<int> moving) {
  m_window = window;
  for (const int control : growing)
    Add(control, Stretch::kGrows);
  for (const int control : moving)
    Add(control, Stretch::kMoves);
}

void StretchLayout::Add(int control, Stretch stretch) {
  Item item{GetDlgItem(m_window, control), {}, 0, stretch};
  GetWindowRect(item.control, &item.place);
  MapWindowPoints(nullptr, m_window, reinterpret_cast<POINT*>(&item.place), 2);
  RECT client{};
  GetClientRect(m_window, &client);
  item.right = client.right - item.place.right;
  m_items.push_back(item);
}

void StretchLayout::Apply() const {
  RECT client{};
  GetClientRect(m_window, &client);
  for (const Item& item : m_items) {
    const int right = client.right - item.right;
    const int left = item.stretch == Stretch::kGrows ? item.place.left : right - (item.place.right - item.place.left);
    SetWindowPos(item.control, nullptr, left, item.place.top, right - left, item.place.bottom - item.place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
  }
}

} // namespace host
