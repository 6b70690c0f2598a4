// What the windows of all three objects have in common, seen on the Script Processor's.
#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

namespace {

constexpr const char* kCaption = "Script processor";
constexpr UINT kWindowMessage = WM_APP + 7, kThreadMessage = WM_APP + 8;

// What a host hears of dialog events, "ROUTE EVENT" for each, and what it answers.
struct EventLog {
  CONXDeviceClient_0* client = nullptr;
  std::string heard;
  std::uint32_t windowAnswer = 1;
  std::uint32_t callbackAnswer = 1;

  void Hear(const char* route, CONXDeviceClient_0* sender, std::uint32_t event) {
    CHECK(sender == client);
    heard += route + std::to_string(event);
  }
};

// The log stands at the window that is told.
LRESULT CALLBACK EventWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kWindowMessage)
    return DefWindowProcA(window, message, wParam, lParam);
  auto& log = *reinterpret_cast<EventLog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
  log.Hear(" window ", reinterpret_cast<CONXDeviceClient_0*>(wParam), static_cast<std::uint32_t>(lParam));
  return static_cast<LRESULT>(log.windowAnswer);
}

HWND MakeEventWindow(EventLog& log) {
  const HWND window = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
  SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&log));
  SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(EventWindowProc));
  return window;
}

std::uint32_t EventCallback(CONXDeviceClient_0* client, void* userData, std::uint32_t event) {
  auto& log = *static_cast<EventLog*>(userData);
  log.Hear(" callback ", client, event);
  return log.callbackAnswer;
}

} // namespace

TEST_CASE("a window is made, hidden, shown again, and made anew when somebody destroyed it") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const auto close = [&] { return host.Ask([&] { return client->CloseDialogNonModal(); }); };
  const Window window = client.Show(kCaption);
  CHECK(client.IsOpen());
  CHECK(client.Show(kCaption).Handle() == window.Handle());
  CHECK((GetWindowLongPtrA(window.Handle(), GWL_EXSTYLE) & WS_EX_APPWINDOW) != 0);
  CHECK(window.Send(WM_GETICON, ICON_SMALL) != 0);
  CHECK(GetWindow(window.Handle(), GW_OWNER) == host.MainWindow().Handle());

  CHECK(close() == EONX_ERR_NONE);
  CHECK(window.Exists());
  CHECK_FALSE(client.IsOpen());
  CHECK(client.Show(kCaption).Handle() == window.Handle());

  host.Do([&] { DestroyWindow(window.Handle()); });
  CHECK(close() == EONX_ERR_DIALOG);
  CHECK_FALSE(client.IsOpen());
  CHECK(client.Show(kCaption).Exists());
}

TEST_CASE("a window that cannot be made is reported") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const auto noWindow = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(0x7FF0));
  const auto show = [&](HWND parent) { return host.Ask([&] { return client->ShowDialogNonModal(parent); }); };
  CHECK(show(noWindow) == EONX_ERR_DIALOG);
  CHECK_FALSE(client.IsOpen());
  CHECK(show(host.MainWindow().Handle()) == EONX_ERR_NONE);
  CHECK(client.IsOpen());
}

TEST_CASE("OK, the close box and Escape ask the host by every route") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  EventLog log;
  log.client = client.get();
  const HWND eventWindow = host.Ask([&] { return MakeEventWindow(log); });

  struct Case {
    bool thread, window, callback;
    std::uint32_t windowAnswer, callbackAnswer;
    bool hides;
  };
  const Case cases[] = {{false, false, false, 0, 0, true},
                        {false, true, false, 1, 0, true},
                        {false, false, true, 0, 1, true},
                        {true, true, true, 1, 0, false},
                        {true, true, true, 0, 1, true}};
  struct Act {
    std::uint32_t event;
    UINT message;
    WPARAM wParam;
  };
  const Act acts[] = {{ONX_DLGEVENT_OK, WM_COMMAND, IDOK},
                      {ONX_DLGEVENT_CLOSE, WM_CLOSE, 0},
                      {ONX_DLGEVENT_CANCEL, WM_COMMAND, IDCANCEL}};
  for (const Case& c : cases) {
    for (const Act& act : acts) {
      client.Show(kCaption);
      log.heard.clear();
      log.windowAnswer = c.windowAnswer;
      log.callbackAnswer = c.callbackAnswer;
      host.Do([&] {
        _TONX_DLGEVENTDATA data{};
        data.threadId = host.ThreadId();
        data.threadMsg = c.thread ? kThreadMessage : 0;
        data.hWnd = c.window ? eventWindow : nullptr;
        data.uMsg = kWindowMessage;
        data.callback = c.callback ? EventCallback : nullptr;
        data.userData = &log;
        client->SetDlgEventData(&data);
        data = {}; // the record was copied
        SendMessageA(window.Handle(), act.message, act.wParam, 0);
        MSG message; // a thread's message has no window, so the loop could only drop it
        while (PeekMessageA(&message, nullptr, kThreadMessage, kThreadMessage, PM_REMOVE))
          log.Hear(" thread ", reinterpret_cast<CONXDeviceClient_0*>(message.wParam),
                   static_cast<std::uint32_t>(message.lParam));
      });
      const std::string event = std::to_string(act.event);
      CHECK(log.heard == (c.window ? " window " + event : "") + (c.callback ? " callback " + event : "") +
                             (c.thread ? " thread " + event : ""));
      CHECK(window.Visible() != c.hides);
    }
  }
  host.Do([&] { DestroyWindow(eventWindow); });
}

TEST_CASE("controls follow the edges that their placement names") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  struct Case {
    int id;
    bool left, top, right, bottom; // what moves with the window's right and lower edges
    RECT before;
  };
  Case cases[] = {{IDC_SCRIPT_CONFIGURATION, false, false, true, false, {}},
                  {IDC_SCRIPT_LOG, false, false, true, true, {}},
                  {IDC_SCRIPT_COPY, false, true, false, true, {}},
                  {IDOK, true, true, true, true, {}}};
  for (Case& c : cases)
    c.before = window.Control(c.id).PlaceInside();
  const RECT outer = window.Place();
  for (const auto& [wider, higher] : {std::pair(137, 61), std::pair(0, 0)}) {
    window.Resize(outer.right - outer.left + wider, outer.bottom - outer.top + higher);
    for (const Case& c : cases) {
      CAPTURE(c.id);
      const RECT place = window.Control(c.id).PlaceInside();
      const RECT wanted = {c.before.left + (c.left ? wider : 0), c.before.top + (c.top ? higher : 0),
                           c.before.right + (c.right ? wider : 0), c.before.bottom + (c.bottom ? higher : 0)};
      CHECK(EqualRect(&place, &wanted));
    }
  }
}

namespace {

int ScreenDensity() {
  const HDC screen = GetDC(nullptr);
  const int density = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return density;
}

} // namespace

// Also to be run on a screen of another density, where fonts and with them templates are larger.
TEST_CASE("windows have a smallest size, at which their controls have room") {
  const struct {
    std::uint32_t type;
    const char* caption;
    int width; // at 96 dpi; 0: as it was made
    int list, below;
  } cases[] = {{ONX_OBJ_SCRIPT_PROCESSOR, kCaption, 0, IDC_SCRIPT_LOG, IDC_SCRIPT_PATH},
               {ONX_OBJ_TERMINAL, "Terminal", 200, IDC_TERMINAL_ANSWERS, IDOK}};
  const auto atThisDensity = [](int pixels) { return MulDiv(pixels, ScreenDensity(), 96); };
  for (const auto& c : cases) {
    CAPTURE(c.caption);
    const TestHost host;
    const TestClient client(host, c.type);
    const Window window = client.Show(c.caption);
    const RECT first = window.Place();
    window.Resize(0, 0);
    const RECT smallest = window.Place();
    CHECK(smallest.right - smallest.left == (c.width == 0 ? first.right - first.left : atThisDensity(c.width)));
    CHECK(smallest.bottom - smallest.top == atThisDensity(250));
    for (HWND control = GetWindow(window.Handle(), GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
      const int id = GetDlgCtrlID(control);
      if (id != IDC_TERMINAL_INPUT && id != IDC_TERMINAL_APPEND_CR)
        CHECK_MESSAGE(Window(control).IsWhole(), "control " << id);
    }
    CHECK(window.Control(c.list).PlaceInside().bottom <= window.Control(c.below).PlaceInside().top);
  }
}

TEST_CASE("a key that a dialog took reaches the host's loop as a null message, one only looked at stays") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  window.Activate();
  const HWND button = window.Control(IDC_SCRIPT_COPY).Handle();
  MSG looked{}, taken{};
  host.Do([&] {
    SetFocus(button);
    PostMessageA(button, WM_KEYDOWN, VK_TAB, 1);
    PeekMessageA(&looked, button, WM_KEYDOWN, WM_KEYDOWN, PM_NOREMOVE);
    PeekMessageA(&taken, button, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE);
  });
  CHECK(looked.message == WM_KEYDOWN);
  CHECK(looked.wParam == VK_TAB);
  CHECK(taken.message == WM_NULL);
  CHECK(taken.wParam == 0);
  CHECK(taken.lParam == 0);
  CHECK(host.Ask([] { return GetFocus(); }) != button);
}
