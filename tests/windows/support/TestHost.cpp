#include "tests/windows/support/TestHost.h"

#include <doctest/doctest.h>

#include <memory>

namespace {

constexpr const char* kClassName = "TestHost";
constexpr UINT kRunMessage = WM_APP; // lParam: the operation, a share that the receiver owns
constexpr DWORD kLimitMs = 60000;

// Owned by whoever is last to use it, so that a test that gave up waiting leaves nothing dangling.
struct Operation {
  std::function<void()> run;
  HANDLE done = CreateEventA(nullptr, TRUE, FALSE, nullptr);
  ~Operation() { CloseHandle(done); }
};
using Share = std::shared_ptr<Operation>;

LRESULT CALLBACK HostWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message != kRunMessage)
    return DefWindowProcA(window, message, wParam, lParam);
  const std::unique_ptr<Share> operation(reinterpret_cast<Share*>(lParam));
  (*operation)->run();
  SetEvent((*operation)->done);
  return 0;
}

HWND MakeMainWindow() {
  WNDCLASSA description{};
  description.lpfnWndProc = HostWindowProc;
  description.hInstance = GetModuleHandleA(nullptr);
  description.lpszClassName = kClassName;
  RegisterClassA(&description); // the second host of a process finds it registered
  return CreateWindowA(kClassName, "Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 300, 100, nullptr, nullptr,
                       description.hInstance, nullptr);
}

template <typename Function>
Function Export(HMODULE module, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

} // namespace

TestHost::TestHost() : m_ready(CreateEventA(nullptr, TRUE, FALSE, nullptr)), m_thread([this] { ThreadMain(); }) {
  REQUIRE_MESSAGE(WaitForSingleObject(m_ready, kLimitMs) == WAIT_OBJECT_0, "the host's thread starts");
  REQUIRE_MESSAGE(m_module, "OndDeviceClient.dll loads");
}

TestHost::~TestHost() {
  PostThreadMessageA(m_threadId, WM_QUIT, 0, 0);
  m_thread.join();
  CloseHandle(m_ready);
}

void TestHost::ThreadMain() {
  m_threadId = GetCurrentThreadId();
  m_module = LoadLibraryA("OndDeviceClient.dll");
  createInstance = Export<OndDeviceClientCreateInstanceFunction>(m_module, "OndDeviceClientCreateInstance");
  deleteInstance = Export<OndDeviceClientDeleteInstanceFunction>(m_module, "OndDeviceClientDeleteInstance");
  m_window = MakeMainWindow();
  SetEvent(m_ready);
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
  DestroyWindow(m_window);
  if (m_module)
    FreeLibrary(m_module);
}

void TestHost::Do(const std::function<void()>& operation) const {
  const auto shared = std::make_shared<Operation>();
  shared->run = operation;
  PostMessageA(m_window, kRunMessage, 0, reinterpret_cast<LPARAM>(new Share(shared)));
  if (WaitForSingleObject(shared->done, kLimitMs) != WAIT_OBJECT_0)
    FAIL("the host's thread did not finish an operation within " << kLimitMs << " ms");
}

void TestHost::Send(const std::function<void()>& operation) const {
  const auto shared = std::make_shared<Operation>();
  shared->run = operation;
  SendMessageA(m_window, kRunMessage, 0, reinterpret_cast<LPARAM>(new Share(shared)));
}

TestClient::TestClient(const TestHost& host, std::uint32_t type) : m_host(host) {
  m_object = host.Ask([&] { return host.createInstance(type); });
  REQUIRE(m_object);
}

Window TestClient::Show(const std::string& caption) const {
  const auto result = m_host.Ask([&] { return m_object->ShowDialogNonModal(m_host.MainWindow().Handle()); });
  REQUIRE(result == EONX_ERR_NONE);
  return Window::WaitForTop(caption);
}
