// One object with its window, on a channel at whose every operation a host may do anything.
#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/windows/RestlessChannel.h"
#include "tests/windows/support/TestHost.h"

#include <set>

// What a host or a user does where control has left the module. Combined with |.
enum Deed : unsigned {
  kDelete = 1,
  kDestroyWindow = 2,
  kDestroyParent = 4,
  kHide = 8,
  kDisconnect = 16,
  kConnectOther = 32,
  kShow = 64,
  kDestroyAndShow = 128,
  kDestroyThenDelete = 256, // the second where control leaves next, in the middle of the first perhaps
  kAbort = 512,             // presses "Abort" or "Stop script"
};
inline constexpr unsigned kAnything = kAbort - 1;
std::string NameOf(unsigned deed);

// Operations belong to the host's thread, unless they say otherwise.
class EndingRun {
public:
  // [the test's thread]
  EndingRun(const TestHost& host, std::uint32_t type, const TemporaryFolder& folder);

  const TemporaryFolder& folder;
  RestlessChannel device, other;
  CONXDeviceClient_0* object = nullptr; // null once it is deleted

  // --- for what is run

  void Connect() { object->Connect(&device); }
  void Show() { object->ShowDialogNonModal(m_parent); }
  // By a message to a window, and by a callback.
  void HearOfEvents();
  // Of the object; null when there is none (any more).
  HWND FindWindow() const;
  void SendToWindow(UINT message, WPARAM wParam);
  HWND Control(int id) const { return GetDlgItem(FindWindow(), id); }
  void AddLocalFile();
  void SelectAll(int list) const;
  // Serves messages while the condition holds.
  static void PumpWhile(const std::function<bool()>& condition);
  // Runs a script of the folder through `Call`. [any thread]
  void CallScriptFile(const std::string& name);

  // --- for who runs it [the test's thread]

  // Runs something on the host's thread until its end, and meanwhile answers the boxes that it opens.
  void Do(const std::function<void(EndingRun&)>& what);
  // The same, but where control leaves the module for the `turn`th time (from 0), the deed is done. `below`: it is a
  // script on the host's thread, which may go on for a little when only its window goes. Ends the program when nothing
  // moves for long.
  void DoWith(unsigned deed, int turn, bool below, const std::function<void(EndingRun&)>& what);
  // Where the deed was done; empty when control did not leave so often.
  const std::string& Place() const { return m_place; }
  // Ends what is left. What went wrong, or nothing.
  std::string End();

private:
  static void ServeMessages();
  void Away(const std::string& place);
  bool IsTurn(const std::string& place);
  void SendDeed();
  void DoDeed();
  void Close();
  void Complain(const std::string& what);
  void ComplainIf(bool wrong, const std::string& what);
  void AnswerBoxes();
  void Answer(Window box) const;

  const TestHost& m_host;
  HWND m_parent = nullptr;
  unsigned m_deed = 0;
  int m_turn = 0;
  bool m_below = false;
  std::string m_place;
  std::set<HWND> m_answered;
  std::string m_complaints;
  std::atomic<bool> m_armed = false;
  std::atomic<int> m_places = 0;
  std::atomic<bool> m_silent = false; // no output may come any more
  std::atomic<bool> m_lateOutput = false;
};
