#include "tests/windows/EndingRun.h"

#include "res/resource.h"

#include <commctrl.h>

#include <bit>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kLimitMs = 20000; // without an end
constexpr unsigned kEndings = kDelete | kDestroyWindow | kDestroyParent | kDestroyAndShow;
constexpr UINT kEventMessage = WM_APP + 9;

bool IsBox(HWND window) {
  char name[16] = "";
  GetClassNameA(window, name, sizeof(name));
  return std::string(name) == "#32770" && IsWindowVisible(window) && IsWindowEnabled(window) &&
         (GetWindowLongA(window, GWL_EXSTYLE) & WS_EX_APPWINDOW) == 0;
}

// Of this process, and none of the objects' own windows.
std::vector<HWND> OpenBoxes() {
  std::vector<HWND> boxes;
  EnumWindows(
      [](HWND window, LPARAM found) -> BOOL {
        DWORD process = 0;
        GetWindowThreadProcessId(window, &process);
        if (process == GetCurrentProcessId() && IsBox(window))
          reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&boxes));
  return boxes;
}

} // namespace

std::string NameOf(unsigned deed) {
  static const char* const kNames[] = {"delete the object",
                                       "destroy the window",
                                       "destroy the parent",
                                       "hide the window",
                                       "disconnect",
                                       "connect another channel",
                                       "show the window",
                                       "destroy the window and show another",
                                       "destroy the window and later delete the object",
                                       "abort"};
  return deed == 0 ? "do nothing" : kNames[std::countr_zero(deed)];
}

EndingRun::EndingRun(const TestHost& host, std::uint32_t type, const TemporaryFolder& files)
    : folder(files), m_host(host) {
  device.directory = {{3, 1, 100}};
  device.away = [this](const char* operation) { Away(operation); };
  host.Do([&] {
    m_parent = CreateWindowA("STATIC", "", WS_OVERLAPPEDWINDOW, 0, 0, 100, 50, nullptr, nullptr, nullptr, nullptr);
    object = host.createInstance(type);
  });
}

HWND EndingRun::FindWindow() const {
  const auto isOurs = [&](HWND window) { return GetWindow(window, GW_OWNER) == m_parent; };
  struct Search {
    const decltype(isOurs)& matches;
    HWND found;
  } search{isOurs, nullptr};
  if (!IsWindow(m_parent))
    return nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM parameter) -> BOOL {
        auto& wanted = *reinterpret_cast<Search*>(parameter);
        wanted.found = wanted.matches(window) ? window : nullptr;
        return wanted.found == nullptr;
      },
      reinterpret_cast<LPARAM>(&search));
  return search.found;
}

void EndingRun::HearOfEvents() {
  SetWindowLongPtrA(m_parent, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  const WNDPROC hear = [](HWND window, UINT message, WPARAM wParam, LPARAM lParam) -> LRESULT {
    if (message != kEventMessage)
      return DefWindowProcA(window, message, wParam, lParam);
    reinterpret_cast<EndingRun*>(GetWindowLongPtrA(window, GWLP_USERDATA))->Away("event message");
    return 1;
  };
  SetWindowLongPtrA(m_parent, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(hear));
  _TONX_DLGEVENTDATA events{};
  events.hWnd = m_parent;
  events.uMsg = kEventMessage;
  events.userData = this;
  events.callback = [](CONXDeviceClient_0*, void* run, std::uint32_t) -> std::uint32_t {
    auto& self = *static_cast<EndingRun*>(run);
    self.ComplainIf(!self.object, "event behind the end");
    self.Away("event callback");
    return 1;
  };
  object->SetDlgEventData(&events);
}

void EndingRun::SendToWindow(UINT message, WPARAM wParam) {
  if (const HWND window = FindWindow())
    SendMessageA(window, message, wParam, 0);
}

void EndingRun::AddLocalFile() {
  LVITEMA item{};
  item.mask = LVIF_TEXT;
  char path[] = "C:\\a.bin";
  item.pszText = path;
  SendMessageA(Control(IDC_FM_LOCAL_LIST), LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
}

void EndingRun::SelectAll(int list) const {
  LVITEMA item{};
  item.stateMask = item.state = LVIS_SELECTED;
  SendMessageA(Control(list), LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
}

void EndingRun::ServeMessages() {
  MSG message;
  while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
    DispatchMessageA(&message);
}

void EndingRun::PumpWhile(const std::function<bool()>& condition) {
  while (condition()) {
    ServeMessages();
    Sleep(1);
  }
}

void EndingRun::CallScriptFile(const std::string& name) {
  const OndScriptOutput output = [](void* context, const char*) {
    auto& self = *static_cast<EndingRun*>(context);
    if (self.m_silent)
      self.m_lateOutput = true;
    self.Away("output");
  };
  const std::string path = folder.PathOf(name);
  object->Call(ONX_CALL_EXECUTE_SCRIPT_FILE, reinterpret_cast<std::uint64_t>(path.c_str()),
               reinterpret_cast<std::uint64_t>(output), reinterpret_cast<std::uint64_t>(this), 0);
}

// --- where control leaves

bool EndingRun::IsTurn(const std::string& place) {
  if (!m_armed || m_places++ != m_turn)
    return false;
  m_place = place;
  return true;
}

// A deed is done right away on the host's thread, from another one in a message that it sends.
void EndingRun::Away(const std::string& place) {
  if (!IsTurn(place))
    return;
  if (GetCurrentThreadId() == m_host.ThreadId())
    DoDeed();
  else
    SendDeed();
}

void EndingRun::SendDeed() {
  m_host.Send([this] {
    DoDeed();
    ServeMessages(); // and with them what was to wake a loop
  });
}

void EndingRun::DoDeed() {
  const HWND window = FindWindow();
  switch (m_deed) {
  case kDelete:
    m_host.deleteInstance(std::exchange(object, nullptr));
    ComplainIf(IsWindow(window), "a window behind the end");
    Close();
    break;
  case kDestroyWindow:
  case kDestroyParent:
    DestroyWindow(m_deed == kDestroyParent ? m_parent : window);
    if (!m_below)
      Close();
    break;
  case kDestroyThenDelete:
    m_deed = kDelete;
    ++m_turn;
    DestroyWindow(window);
    break;
  case kHide:
    object->CloseDialogNonModal();
    break;
  case kDisconnect:
    object->Connect(nullptr);
    break;
  case kConnectOther:
    object->Connect(&other);
    break;
  case kShow:
    Show();
    break;
  case kDestroyAndShow:
    DestroyWindow(window);
    Show();
    break;
  case kAbort:
    if (const Window progress = Window::FindTop("Progress"); progress.Exists())
      SendMessageA(progress.Handle(), WM_COMMAND, IDCANCEL, 0);
    else
      SendMessageA(window, WM_COMMAND, IDC_SCRIPT_EXECUTE, 0);
    break;
  }
}

// The object or its window has gone. A lock that the channel is just granting goes back a little later, and so do
// others while one is being given back.
void EndingRun::Close() {
  device.Close();
  m_silent = true;
  const bool isUnderWay = m_below || m_place == "Lock" || m_place == "Unlock";
  ComplainIf(!isUnderWay && device.LockDepth() != 0, "locked behind the end");
}

void EndingRun::Complain(const std::string& what) {
  m_complaints += (m_complaints.empty() ? "" : ", ") + what;
}

void EndingRun::ComplainIf(bool wrong, const std::string& what) {
  if (wrong)
    Complain(what);
}

// --- who runs it

void EndingRun::Do(const std::function<void(EndingRun&)>& what) {
  std::atomic<bool> done = false;
  std::thread run([&] {
    m_host.Do([&] { what(*this); });
    done = true;
  });
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kLimitMs);
  while (!done) {
    AnswerBoxes();
    if (std::chrono::steady_clock::now() > end) { // this process cannot be mended any more
      std::fprintf(stderr, "EndingRun: no end; \"%s\" at \"%s\"\n", NameOf(m_deed).c_str(), m_place.c_str());
      std::fflush(stderr);
      std::_Exit(1);
    }
    Sleep(1);
  }
  run.join();
}

void EndingRun::DoWith(unsigned deed, int turn, bool below, const std::function<void(EndingRun&)>& what) {
  m_deed = deed;
  m_turn = turn;
  m_below = below;
  m_armed = true;
  Do(what);
  m_armed = false;
}

// Each box is answered once, and is a place where control has left before.
void EndingRun::AnswerBoxes() {
  for (const HWND box : OpenBoxes()) {
    if (!m_answered.insert(box).second)
      continue;
    const bool isTurn = IsTurn("\"" + Window(box).Text() + "\"");
    if (isTurn)
      SendDeed();
    if (!isTurn || (m_deed & kEndings) == 0)
      Answer(Window(box)); // otherwise it has to go by itself
  }
}

void EndingRun::Answer(Window box) const {
  const auto has = [&](int id) { return GetDlgItem(box.Handle(), id) != nullptr; };
  if (box.Text() == "Open a script file")
    box.TypeFileName(folder.PathOf("test.dcs"));
  else if (has(IDYES))
    PostMessageA(box.Handle(), WM_COMMAND, IDYES, 0);
  else if (has(IDC_PROPERTIES_FILENAME) || box.Text() == "Open source file(s)")
    PostMessageA(box.Handle(), WM_COMMAND, IDCANCEL, 0);
  else if (has(IDOK)) // all but the progress window
    PostMessageA(box.Handle(), WM_COMMAND, IDOK, 0);
}

std::string EndingRun::End() {
  m_host.Do([&] {
    if (object)
      m_host.deleteInstance(object);
    if (IsWindow(m_parent))
      DestroyWindow(m_parent);
  });
  ComplainIf(m_lateOutput, "output behind the end");
  ComplainIf(device.LockDepth() + other.LockDepth() != 0, "locked for ever");
  for (RestlessChannel* const channel : {&device, &other}) {
    for (const std::string& violation : channel->Late())
      Complain(violation);
    for (const std::string& violation : channel->TakeViolations())
      Complain(violation);
  }
  return m_complaints;
}
