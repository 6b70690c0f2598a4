#pragma once

#include "window/CWnd.h"

#include <optional>

class CComboBox : public CWnd {
public:
  // Adds an item in the list's own order, with a number that stays with it.
  void AddString(const char* text, DWORD data) {
    const LRESULT index = Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
    if (index >= 0)
      Send(CB_SETITEMDATA, static_cast<WPARAM>(index), data);
  }
  // The number of the selected item, if one is selected.
  std::optional<DWORD> GetCurData() const {
    const LRESULT index = Send(CB_GETCURSEL);
    return index < 0 ? std::nullopt
                     : std::optional(static_cast<DWORD>(Send(CB_GETITEMDATA, static_cast<WPARAM>(index))));
  }
  // Selects the first item with that number; nothing when there is none.
  void SetCurData(DWORD data) {
    const LRESULT count = Send(CB_GETCOUNT);
    LRESULT index = 0;
    while (index < count && static_cast<DWORD>(Send(CB_GETITEMDATA, static_cast<WPARAM>(index))) != data)
      ++index;
    Send(CB_SETCURSEL, index < count ? static_cast<WPARAM>(index) : static_cast<WPARAM>(-1));
  }
};
