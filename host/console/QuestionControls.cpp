#include "host/console/QuestionControls.h"

#include <algorithm>
#include <string_view>

namespace host {
namespace {

std::string ClassOf(HWND window) {
  char name[32] = "";
  GetClassNameA(window, name, sizeof name);
  return name;
}

std::string TextOf(HWND window) {
  if (!window)
    return {};
  std::string text(static_cast<std::size_t>(SendMessageA(window, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  text.resize(
      static_cast<std::size_t>(SendMessageA(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()))));
  return text;
}

std::string ItemOf(HWND list, WPARAM item) {
  const LRESULT length = SendMessageA(list, LB_GETTEXTLEN, item, 0);
  if (length == LB_ERR)
    return {};
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  SendMessageA(list, LB_GETTEXT, item, reinterpret_cast<LPARAM>(text.data()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

} // namespace

bool IsDialog(HWND window) {
  return ClassOf(window) == "#32770"; // the system's class of both
}

QuestionControls::QuestionControls(HWND dialog) : m_dialog(dialog) {
  for (HWND control = GetWindow(dialog, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT))
    Find(control);
}

void QuestionControls::Find(HWND control) {
  const std::string name = ClassOf(control);
  const bool isReadOnly = (GetWindowLongPtrA(control, GWL_STYLE) & ES_READONLY) != 0;
  if (name == "ListBox")
    m_list = control;
  else if (name == "Edit" && !isReadOnly)
    m_field = control;
  // A prompt is a label, a long one a field that can be scrolled; a box has an icon too, whose text is empty.
  else if ((name == "Static" || name == "Edit") && (!m_prompt || TextOf(m_prompt).size() < TextOf(control).size()))
    m_prompt = control;
}

Question QuestionControls::Read() const {
  Question question;
  question.kind = m_list ? QuestionKind::kChoice : m_field ? QuestionKind::kEntry : QuestionKind::kBox;
  question.caption = TextOf(m_dialog);
  question.prompt = TextOf(m_prompt);
  if (m_list) {
    const LRESULT count = SendMessageA(m_list, LB_GETCOUNT, 0, 0);
    for (LRESULT item = 0; item < count; ++item)
      question.items.push_back(ItemOf(m_list, static_cast<WPARAM>(item)));
  }
  question.initial = question.kind == QuestionKind::kBox ? "" : Answer();
  return question;
}

std::string QuestionControls::Answer() const {
  if (m_field)
    return TextOf(m_field);
  if (!m_list)
    return "OK";
  const LRESULT chosen = SendMessageA(m_list, LB_GETCURSEL, 0, 0);
  return chosen == LB_ERR ? std::string() : ItemOf(m_list, static_cast<WPARAM>(chosen));
}

void QuestionControls::TypeEntry(const std::string& text) const {
  SendMessageA(m_field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.c_str()));
}

bool QuestionControls::Choose(std::size_t item) const {
  return SendMessageA(m_list, LB_SETCURSEL, item, 0) != LB_ERR;
}

} // namespace host
