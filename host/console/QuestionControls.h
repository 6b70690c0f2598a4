// What stands in a window that asks its user something, for a host that sees such windows as a person does.
#pragma once

#include "host/answers/Question.h"

#include <windows.h>

#include <string>

namespace host {

// Whether a window is a dialog or a message box.
bool IsDialog(HWND window);

// A question's window: a box has texts and buttons, an entry a field, a choice a list. [the window's thread]
class QuestionControls {
public:
  // Once its controls are filled.
  explicit QuestionControls(HWND dialog);

  HWND Dialog() const { return m_dialog; }
  Question Read() const;
  // What would be the answer now.
  std::string Answer() const;
  void TypeEntry(const std::string& text) const;
  // False when there is no such item.
  bool Choose(std::size_t item) const;

private:
  void Find(HWND control);

  HWND m_dialog;
  HWND m_field = nullptr;
  HWND m_list = nullptr;
  HWND m_prompt = nullptr;
};

} // namespace host
