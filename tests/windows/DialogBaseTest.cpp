// What the windows of all three objects have in common, seen on the Script Processor's.
#include "res/resource.h"
#include "tests/support/GuardedChannel.h"
#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

#include <atomic>

namespace {

constexpr const char* kCaption = "Script processor";

class StatusChannel : public GuardedChannel {
public:
  const char* GetInfoString(std::uint32_t what, std::int64_t code) override {
    GuardedChannel::GetInfoString(what, code);
    return what == OND_INFO_DESCRIPTION ? "Bench 4" : "115200 8N1";
  }
  std::uint32_t GetState() override {
    GuardedChannel::GetState();
    return state;
  }

  std::atomic<std::uint32_t> state = 1;
};

// What a host hears of dialog events, by all three routes.
struct EventLog {
  std::atomic<int> sent = 0, posted = 0, called = 0;
  std::atomic<std::uint32_t> lastEvent = 99;
  std::atomic<LRESULT> sendAnswer = 1;
  std::atomic<std::uint32_t> callAnswer = 1;
  CONXDeviceClient_0* client = nullptr;
};
EventLog* g_log = nullptr;

constexpr UINT kEventMessage = WM_APP + 7;

LRESULT CALLBACK EventWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == kEventMessage && g_log) {
    g_log->sent += wParam == reinterpret_cast<WPARAM>(g_log->client);
    g_log->lastEvent = static_cast<std::uint32_t>(lParam);
    return g_log->sendAnswer;
  }
  return DefWindowProcA(window, message, wParam, lParam);
}

std::uint32_t EventCallback(CONXDeviceClient_0* client, void* userData, std::uint32_t event) {
  auto& log = *static_cast<EventLog*>(userData);
  log.called += client == log.client;
  log.lastEvent = event;
  return log.callAnswer;
}

HWND MakeEventWindow() {
  WNDCLASSA description{};
  description.lpfnWndProc = EventWindowProc;
  description.hInstance = GetModuleHandleA(nullptr);
  description.lpszClassName = "TestEvents";
  RegisterClassA(&description);
  return CreateWindowA("TestEvents", "", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, description.hInstance, nullptr);
}

} // namespace

TEST_CASE("a window is made, hidden, shown again, and made anew when somebody destroyed it") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const auto close = [&] { return host.Ask([&] { return client->CloseDialogNonModal(); }); };
  CHECK(close() == EONX_ERR_DIALOG);
  CHECK_FALSE(client.IsOpen());

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
  EventLog log;
  log.client = client.get();
  g_log = &log;
  const HWND eventWindow = host.Ask([] { return MakeEventWindow(); });
  const Window window = client.Show(kCaption);

  enum Route { kThread = 1, kWindow = 2, kCallback = 4 };
  struct Case {
    int routes;
    LRESULT sendAnswer;
    std::uint32_t callAnswer;
    bool hides;
  };
  const Case cases[] = {
      {0, 0, 0, true},
      {kWindow, 1, 0, true},
      {kCallback, 0, 1, true},
      {kThread | kWindow | kCallback, 1, 0, false},
      {kThread | kWindow | kCallback, 0, 1, true},
  };
  struct Act {
    const char* name;
    std::uint32_t event;
    UINT message;
    WPARAM wParam;
  };
  const Act acts[] = {{"OK", ONX_DLGEVENT_OK, WM_COMMAND, IDOK},
                      {"close", ONX_DLGEVENT_CLOSE, WM_CLOSE, 0},
                      {"cancel", ONX_DLGEVENT_CANCEL, WM_COMMAND, IDCANCEL}};
  for (const Case& c : cases) {
    for (const Act& act : acts) {
      CAPTURE(act.name);
      CAPTURE(c.routes);
      client.Show(kCaption);
      log.sent = log.posted = log.called = 0;
      log.sendAnswer = c.sendAnswer;
      log.callAnswer = c.callAnswer;
      _TONX_DLGEVENTDATA data{};
      if (c.routes & kThread) {
        data.threadId = host.ThreadId();
        data.threadMsg = kEventMessage + 1;
      }
      if (c.routes & kWindow) {
        data.hWnd = eventWindow;
        data.uMsg = kEventMessage;
      }
      if (c.routes & kCallback) {
        data.callback = EventCallback;
        data.userData = &log;
      }
      host.Do([&] {
        client->SetDlgEventData(&data);
        data = {}; // the record was copied
        SendMessageA(window.Handle(), act.message, act.wParam, 0);
        MSG message; // a thread's message has no window, so the loop could only drop it
        while (PeekMessageA(&message, nullptr, kEventMessage + 1, kEventMessage + 1, PM_REMOVE))
          log.posted += message.wParam == reinterpret_cast<WPARAM>(log.client);
      });
      CHECK(window.Visible() != c.hides);
      CHECK(log.posted == ((c.routes & kThread) ? 1 : 0));
      CHECK(log.sent == ((c.routes & kWindow) ? 1 : 0));
      CHECK(log.called == ((c.routes & kCallback) ? 1 : 0));
      if (c.routes & (kWindow | kCallback))
        CHECK(log.lastEvent == act.event);
    }
  }
  host.Do([&] { DestroyWindow(eventWindow); });
  g_log = nullptr;
}

TEST_CASE("a host may end the object from inside its answer to an event") {
  const TestHost host;
  TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  struct Deletion {
    const TestHost& host;
    TestClient& client;
  } deletion{host, client};
  _TONX_DLGEVENTDATA data{};
  data.userData = &deletion;
  data.callback = [](CONXDeviceClient_0* object, void* userData, std::uint32_t) -> std::uint32_t {
    static_cast<Deletion*>(userData)->host.deleteInstance(object);
    return 1;
  };
  host.Do([&] { client->SetDlgEventData(&data); });
  window.PressControl(IDOK);
  WaitFor("the window to go with its object", [&] { return !window.Exists(); });
  host.Settle();
  client.Forget();
}

TEST_CASE("the status follows the channel while it is connected") {
  const TestHost host;
  StatusChannel channel;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window status = client.Show(kCaption).Control(IDC_SCRIPT_CONFIGURATION);
  CHECK(status.Text() == "No communication device...");

  client.Connect(&channel);
  const std::string head = "Channel description: Bench 4\nChannel configuration: 115200 8N1\nState: ";
  CHECK(status.Text() == head + "open");
  channel.state = 2;
  WaitFor("the status timer to notice the closed channel", [&] { return status.Text() == head + "closed"; });

  // Somebody else holds the channel: the text is blank until it is free.
  int other = 0;
  REQUIRE(channel.Lock(&other, 0) == 0);
  WaitFor("the status to go blank", [&] { return status.Text().empty(); });
  channel.Unlock(&other);
  WaitFor("the status to come back", [&] { return status.Text() == head + "closed"; });

  client.Connect(nullptr);
  CHECK(status.Text() == "No communication device...");
}

TEST_CASE("controls follow the edges that their placement names") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  struct Case {
    int id;
    bool stretchX, stretchY, right, bottom;
  };
  const Case cases[] = {
      {IDC_SCRIPT_CONFIGURATION, true, false, true, false},
      {IDC_SCRIPT_LOG, true, true, true, true},
      {IDC_SCRIPT_COPY, false, false, false, true},
      {IDOK, false, false, true, true},
  };
  const RECT outer = window.Place();
  std::vector<RECT> before;
  for (const Case& c : cases)
    before.push_back(window.Control(c.id).PlaceInside());
  constexpr int kWider = 137, kHigher = 61;
  const auto check = [&](int wider, int higher) {
    for (std::size_t i = 0; i < std::size(cases); ++i) {
      const Case& c = cases[i];
      CAPTURE(c.id);
      const RECT place = window.Control(c.id).PlaceInside();
      CHECK(place.left == before[i].left + (c.right && !c.stretchX ? wider : 0));
      CHECK(place.right == before[i].right + (c.right ? wider : 0));
      CHECK(place.top == before[i].top + (c.bottom && !c.stretchY ? higher : 0));
      CHECK(place.bottom == before[i].bottom + (c.bottom ? higher : 0));
    }
  };
  window.Resize(outer.right - outer.left + kWider, outer.bottom - outer.top + kHigher);
  check(kWider, kHigher);
  window.Resize(outer.right - outer.left, outer.bottom - outer.top);
  check(0, 0);
}

TEST_CASE("a key that a dialog took reaches the host's loop as a null message, one only looked at stays") {
  const TestHost host;
  const TestClient client(host, ONX_OBJ_SCRIPT_PROCESSOR);
  const Window window = client.Show(kCaption);
  window.Activate();
  const HWND button = window.Control(IDC_SCRIPT_COPY).Handle();
  struct Seen {
    MSG looked, taken;
  };
  const Seen seen = host.Ask([&] {
    Seen s{};
    SetFocus(button);
    PostMessageA(button, WM_KEYDOWN, VK_TAB, 1);
    PeekMessageA(&s.looked, button, WM_KEYDOWN, WM_KEYDOWN, PM_NOREMOVE);
    PeekMessageA(&s.taken, button, WM_KEYDOWN, WM_KEYDOWN, PM_REMOVE);
    return s;
  });
  CHECK(seen.looked.message == WM_KEYDOWN);
  CHECK(seen.looked.wParam == VK_TAB);
  CHECK(seen.taken.message == WM_NULL);
  CHECK(seen.taken.wParam == 0);
  CHECK(seen.taken.lParam == 0);
  CHECK(host.Ask([] { return GetFocus(); }) != button);
}
