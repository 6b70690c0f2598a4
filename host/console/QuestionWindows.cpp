#include "host/console/QuestionWindows.h"

#include "host/answers/ItemAnswer.h"
#include "host/support/Text.h"

#include <utility>

namespace host {
namespace {

QuestionWindows* g_active = nullptr; // a hook's procedure has no other way to its object

bool CanMakeWindows() {
  const HWND window =
      CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, GetModuleHandleA(nullptr), nullptr);
  if (!window)
    return false;
  DestroyWindow(window);
  return true;
}

// A service's is not: nobody would ever see the question.
bool IsDesktopVisible() {
  USEROBJECTFLAGS flags{};
  DWORD size = 0;
  const BOOL known = GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, &size);
  return known == FALSE || (flags.dwFlags & WSF_VISIBLE) != 0;
}

// The only button of a box may have either number.
void Press(HWND dialog, WORD button) {
  SendMessageA(dialog, WM_COMMAND, GetDlgItem(dialog, button) ? button : button == IDOK ? IDCANCEL : IDOK, 0);
}

} // namespace

QuestionWindows::~QuestionWindows() {
  UseDesk(nullptr);
}

void QuestionWindows::UseDesk(AnswerDesk* desk) {
  m_desk = desk;
  g_active = desk ? this : nullptr;
  const DWORD thread = GetCurrentThreadId();
  m_hook.reset(desk ? SetWindowsHookExA(WH_CALLWNDPROCRET, OnMessageDone, nullptr, thread) : nullptr);
  m_creationHook.reset(desk ? SetWindowsHookExA(WH_CBT, OnWindowEvent, nullptr, thread) : nullptr);
}

void QuestionWindows::Dismiss() {
  if (const HWND window = m_window)
    PostMessageA(window, WM_COMMAND, IDCANCEL, 0);
}

LRESULT CALLBACK QuestionWindows::OnMessageDone(int code, WPARAM wParam, LPARAM lParam) {
  const auto& done = *reinterpret_cast<const CWPRETSTRUCT*>(lParam);
  if (code == HC_ACTION && g_active) {
    const HWND asking = g_active->m_window;
    if (done.message == WM_INITDIALOG && IsDialog(done.hwnd))
      g_active->OnDialogFilled(done.hwnd);
    else if (done.message == WM_COMMAND && done.hwnd == asking)
      g_active->OnPressed(LOWORD(done.wParam));
    else if (done.message == WM_DESTROY && done.hwnd == asking)
      g_active->OnDestroyed();
  }
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

LRESULT CALLBACK QuestionWindows::OnWindowEvent(int code, WPARAM wParam, LPARAM lParam) {
  if (code == HCBT_CREATEWND && g_active && !g_active->m_question && IsDialog(reinterpret_cast<HWND>(wParam)))
    g_active->OnDialogBegun(reinterpret_cast<const CBT_CREATEWNDA*>(lParam)->lpcs->lpszName);
  return CallNextHookEx(nullptr, code, wParam, lParam);
}

// Where no window can be shown, this is all that is heard of a question.
void QuestionWindows::OnDialogBegun(const char* caption) {
  const bool needsPerson = !m_desk->HasAnswers();
  if (CanMakeWindows() && (!needsPerson || IsDesktopVisible()))
    return;
  Question question;
  question.caption = caption ? caption : "";
  if (m_desk->Open(std::move(question)))
    m_desk->FindNobody("no window can be shown here");
}

// A dialog in front of an open question is the window's complaint about an answer.
void QuestionWindows::OnDialogFilled(HWND dialog) {
  if (m_question) {
    m_complaint = dialog;
  } else {
    m_question.emplace(dialog);
    m_window = dialog;
    m_pressed.reset();
    m_answer = nullptr;
    m_desk->Open(m_question->Read());
  }
  if (m_desk->HasAnswers() || m_desk->Failed() != AnswerDesk::Failure::kNone)
    AnswerSoon();
}

void CALLBACK QuestionWindows::OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  KillTimer(nullptr, timer);
  if (g_active && g_active->m_timer == timer && g_active->m_question)
    g_active->Answer();
}

void QuestionWindows::AnswerSoon() {
  if (m_timer != 0)
    KillTimer(nullptr, m_timer);
  m_timer = SetTimer(nullptr, 0, 0, OnTimer);
}

void QuestionWindows::Answer() {
  if (const HWND complaint = std::exchange(m_complaint, nullptr)) {
    const std::string text = QuestionControls(complaint).Read().prompt;
    Press(complaint, IDOK);
    if (m_answer)
      Refuse(*m_answer, text);
    return;
  }
  if (!m_refusal.empty())
    return Refuse(*m_answer, m_refusal);
  const HWND dialog = m_question->Dialog();
  if (m_desk->Failed() == AnswerDesk::Failure::kNone)
    m_answer = m_desk->FileAnswerToIt();
  const bool isBox = m_desk->Asked().kind == QuestionKind::kBox;
  if (!m_answer || (!isBox && m_answer->kind == FileAnswer::Kind::kCancel))
    Press(dialog, IDCANCEL);
  else
    Enter(*m_answer);
}

void QuestionWindows::Enter(const FileAnswer& answer) {
  const Question& question = m_desk->Asked();
  const std::string text = answer.quoted && question.kind == QuestionKind::kChoice ? Quoted(answer.text) : answer.text;
  const bool isDefault = answer.kind == FileAnswer::Kind::kDefault;
  std::string complaint = Quoted(text) + " is not a number";
  if (question.kind == QuestionKind::kBox) {
    if (!isDefault && !EqualIgnoringCase(text, "OK"))
      return Refuse(answer, "a box takes nothing but OK");
  } else if (question.kind == QuestionKind::kEntry) {
    if (!isDefault)
      m_question->TypeEntry(text);
  } else if (!isDefault) {
    const auto item = FindItem(question.items, text);
    if (!item || !m_question->Choose(*item))
      return Refuse(answer, text + " is neither the number nor the text of an item");
  } else {
    complaint = "no item is offered";
  }
  Press(m_question->Dialog(), IDOK);
  if (m_desk->Failed() != AnswerDesk::Failure::kNone)
    return; // the window has complained
  // One that takes the answer goes before this is over; one that refuses it without a word stays.
  m_refusal = complaint;
  AnswerSoon();
}

void QuestionWindows::Refuse(const FileAnswer& answer, const std::string& complaint) {
  m_desk->Refuse(answer, complaint);
  m_refusal.clear();
  if (const HWND dialog = m_window)
    PostMessageA(dialog, WM_COMMAND, IDCANCEL, 0);
}

void QuestionWindows::OnPressed(WORD button) {
  if (button == IDOK)
    m_pressed = m_question->Answer();
  else if (button == IDCANCEL)
    m_pressed.reset();
}

void QuestionWindows::OnDestroyed() {
  const bool isBox = m_desk->Asked().kind == QuestionKind::kBox;
  if (m_desk->Failed() == AnswerDesk::Failure::kNone)
    m_desk->Close(isBox ? std::optional<std::string>("OK") : m_pressed, m_answer);
  m_window = nullptr;
  m_question.reset();
  m_refusal.clear();
  m_timer = 0; // one that is still on its way finds nothing to answer
  m_answer = nullptr;
  m_complaint = nullptr;
}

} // namespace host
