#include "host/windows/Program.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Interrupt.h"
#include "host/windows/MainWindow.h"
#include "host/windows/OwnConsole.h"

namespace host {
namespace {

// A loop as any program has it: it knows the host's own window, and nothing of the module's.
void ServeMessages(const MainWindow& window) {
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (window.TakeKey(message))
      continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

} // namespace

int RunWindows(const char* program, const ChannelOptions& options, TraceFork& records) {
  LeaveOwnConsole();
  // Loaded on this thread, whose windows the tools' windows will be among; unloaded after all of them.
  const auto module = Module::Load();
  MainWindow window(options, records);
  if (!window.Create()) {
    PrintMessage(program, "no window can be shown here");
    return EONX_ERR_DIALOG;
  }
  const Interrupt interrupt(
      [handle = window.Handle()](const InterruptCause&) { PostMessageA(handle, WM_CLOSE, 0, 0); });
  if (module)
    window.UseModule(*module);
  else
    window.DoWithoutModule(module.error());
  window.ConnectChannel();
  ServeMessages(window);
  return 0;
}

} // namespace host
