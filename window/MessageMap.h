// Message maps: constexpr tables that lead messages to member functions.
//
//   bool CMyDialog::OnWndMsg(const Message& message, LRESULT& result) {
//     static constexpr MessageEntry kMap[] = {
//         OnMessage<&CMyDialog::OnTimer>(WM_TIMER),
//         OnCommand<&CMyDialog::OnClear>(IDC_CLEAR),
//     };
//     return Dispatch(kMap, message, result) || CDialog::OnWndMsg(message, result);
//   }
//
// A member takes nothing or a `const Message&`. It answers nothing (handled, result 0), an LRESULT (handled, with that
// result) or a bool (true: handled, false: the default handling follows).
#pragma once

#include <windows.h>

#include <type_traits>

class CWnd;

struct Message {
  UINT number;
  WPARAM wParam;
  LPARAM lParam;

  const NMHDR& Notification() const { return *reinterpret_cast<const NMHDR*>(lParam); } // of WM_NOTIFY
};

using MessageHandler = bool (*)(CWnd& window, const Message& message, LRESULT& result);

struct MessageEntry {
  UINT message;
  UINT code; // notification code, for WM_COMMAND and notifications
  UINT id;   // control, for WM_COMMAND and WM_NOTIFY
  MessageHandler member;

  bool Matches(const Message& incoming) const;
};

// What a control gets back of a WM_NOTIFY that its parent left alone.
inline constexpr UINT kReflectedNotify = WM_USER + 0x1C00 + WM_NOTIFY;

namespace messagemap {

template <typename Call>
bool Answer(Call&& call, LRESULT& result) {
  using Returned = std::invoke_result_t<Call>;
  if constexpr (std::is_same_v<Returned, bool>) {
    return call();
  } else if constexpr (std::is_void_v<Returned>) {
    call();
    return true;
  } else {
    result = call();
    return true;
  }
}

template <typename Class, typename Returned>
Class ClassOf(Returned (Class::*)());
template <typename Class, typename Returned>
Class ClassOf(Returned (Class::*)(const Message&));

// The one place where a message meets the object's own type.
template <auto Member>
bool Invoke(CWnd& window, const Message& message, LRESULT& result) {
  using Class = decltype(ClassOf(Member));
  auto& object = static_cast<Class&>(window);
  if constexpr (std::is_invocable_v<decltype(Member), Class&>)
    return Answer([&] { return (object.*Member)(); }, result);
  else
    return Answer([&] { return (object.*Member)(message); }, result);
}

} // namespace messagemap

template <auto Member>
constexpr MessageEntry OnMessage(UINT message) {
  return {message, 0, 0, messagemap::Invoke<Member>};
}

template <auto Member>
constexpr MessageEntry OnCommand(UINT id, UINT code = BN_CLICKED) {
  return {WM_COMMAND, code, id, messagemap::Invoke<Member>};
}

template <auto Member>
constexpr MessageEntry OnNotify(UINT id, UINT code) {
  return {WM_NOTIFY, code, id, messagemap::Invoke<Member>};
}

// A control's own notification, in the control's map.
template <auto Member>
constexpr MessageEntry OnReflectedNotify(UINT code) {
  return {kReflectedNotify, code, 0, messagemap::Invoke<Member>};
}
