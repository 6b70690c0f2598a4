#include "host/windows/Program.h"

#include "host/commandline/ChannelArguments.h"
#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"
#include "host/commandline/TraceCommand.h"
#include "host/support/Interrupt.h"
#include "host/support/Text.h"
#include "host/windows/MainWindow.h"
#include "host/windows/OwnConsole.h"

#include <cstdlib>

namespace host {
namespace {

// A loop as any program has it: it knows the host's own window, and nothing of the module's.
void ServeMessages(MainWindow& window) {
  MSG message;
  while (GetMessageA(&message, nullptr, 0, 0) > 0) {
    if (window.TakeKey(message))
      continue;
    TranslateMessage(&message);
    DispatchMessageA(&message);
  }
}

// Where a user's programs keep what they remember; empty when the system names no such folder.
std::string DefaultSettings() {
  const char* const folder = std::getenv("APPDATA");
  return folder && *folder ? std::string(folder) + "\\OndHost\\settings.ini" : std::string();
}

tl::expected<std::string, std::string> ReadSettingsPath(const CommandLine& line) {
  if (!line.Has("--settings"))
    return DefaultSettings();
  std::string path = line.Value("--settings", "");
  if (path.empty())
    return tl::unexpected<std::string>("--settings: the file has no name");
  return path == "none" ? std::string() : path;
}

} // namespace

tl::expected<WindowsArguments, std::string> ReadWindowsArguments(const CommandLine& line) {
  WindowsArguments arguments;
  auto channel = ReadChannelOptions(line);
  if (!channel)
    return tl::unexpected(channel.error());
  arguments.channel = std::move(*channel);
  auto trace = ReadTracePath(line);
  if (!trace)
    return tl::unexpected(trace.error());
  arguments.trace = std::move(*trace);
  auto settings = ReadSettingsPath(line);
  if (!settings)
    return tl::unexpected(settings.error());
  arguments.settings = std::move(*settings);
  arguments.log = line.Value("--log", "");
  if (line.Has("--log") && arguments.log.empty())
    return tl::unexpected<std::string>("--log: the file has no name");
  arguments.script = line.Value("FILE", "");
  if (line.Has("FILE") && !arguments.script.ends_with(".dcs") && !arguments.script.ends_with(".DCS"))
    return tl::unexpected("there is no command " + Quoted(arguments.script) + ", and a script's name ends in .dcs");
  return arguments;
}

int RunWindows(const char* program, const WindowsArguments& arguments) {
  TraceFork records;
  const auto trace =
      arguments.trace.empty() ? nullptr : OpenTrace(program, arguments.trace, arguments.channel.text, records);
  if (!arguments.trace.empty() && !trace)
    return kExitStream;
  Notes notes(arguments.settings, records);
  notes.log.Add(LogTopic::kProgram, std::string(program) + " " OND_VERSION " begins");
  if (!arguments.log.empty()) {
    if (const auto opened = notes.log.OpenFile(arguments.log); !opened) {
      PrintMessage(program, opened.error());
      return kExitStream;
    }
  }
  LeaveOwnConsole();
  // Loaded on this thread, whose windows the tools' windows will be among; unloaded after all of them.
  const auto module = Module::Load();
  MainWindow window(arguments.channel, notes);
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
  window.RunWhenOpen(arguments.script);
  window.ConnectChannel();
  ServeMessages(window);
  notes.log.Add(LogTopic::kProgram, std::string(program) + " ends");
  return 0;
}

} // namespace host
