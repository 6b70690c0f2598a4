// A host program as a stranger would write it: a user-interface thread with a main window and the plainest message
// loop, the module loaded by name, its objects reached through its exports.
#pragma once

#include "frame/contract/OndDeviceClient.h"
#include "tests/windows/support/WindowDriver.h"

#include <functional>
#include <thread>
#include <type_traits>
#include <utility>

class TestHost {
public:
  // Starts the thread, which loads the module.
  TestHost();
  // Unloads it again. All clients have ended before.
  ~TestHost();
  TestHost(const TestHost&) = delete;
  TestHost& operator=(const TestHost&) = delete;

  // Runs an operation on the user-interface thread and waits for it; fails the test when that takes too long.
  void Do(const std::function<void()>& operation) const;
  template <typename Operation>
  auto Ask(Operation operation) const {
    std::invoke_result_t<Operation> answer{};
    Do([&] { answer = operation(); });
    return answer;
  }

  // Sends it to the main window instead of posting it, as a channel on another thread does that has something to tell.
  // Returns when it is answered, which may be before the operation has ended.
  void Send(const std::function<void()>& operation) const;

  // Waits until everything sent and posted to the thread before has been handled.
  void Settle() const {
    Do([] {});
  }

  Window MainWindow() const { return Window(m_window); }
  HMODULE Module() const { return m_module; }
  DWORD ThreadId() const { return m_threadId; }

  OndDeviceClientCreateInstanceFunction createInstance = nullptr;
  OndDeviceClientDeleteInstanceFunction deleteInstance = nullptr;

private:
  void ThreadMain();

  HMODULE m_module = nullptr;
  HWND m_window = nullptr;
  DWORD m_threadId = 0;
  HANDLE m_ready = nullptr; // the thread's fields are there
  std::thread m_thread;
};

// One object of the module. Its operations run on the host's thread.
class TestClient {
public:
  TestClient(const TestHost& host, std::uint32_t type);
  ~TestClient() { Delete(); }
  TestClient(const TestClient&) = delete;
  TestClient& operator=(const TestClient&) = delete;

  CONXDeviceClient_0* operator->() const { return m_object; }
  CONXDeviceClient_0* get() const { return m_object; }

  void Connect(COndDeviceComm_0* channel) const {
    m_host.Do([&] { m_object->Connect(channel); });
  }
  // Shows the window, which must have that caption.
  Window Show(const std::string& caption) const;
  bool IsOpen() const {
    return m_host.Ask([&] { return m_object->IsNonModalDialogOpen() == 1; });
  }
  void Delete() {
    if (CONXDeviceClient_0* const object = std::exchange(m_object, nullptr))
      m_host.Do([&] { m_host.deleteInstance(object); });
  }

private:
  const TestHost& m_host;
  CONXDeviceClient_0* m_object = nullptr;
};
