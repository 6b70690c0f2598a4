// `run`, whichever way the script engine is reached.
#pragma once

#include "host/answers/AnswerDesk.h"
#include "host/commandline/RunArguments.h"
#include "host/support/Interrupt.h"

#include <functional>
#include <string>
#include <string_view>

namespace host {

// Something that runs scripts: an object of the module, or the engine linked into the program.
class ScriptProcessor {
public:
  virtual ~ScriptProcessor() = default;

  // The channel stays the caller's; null disconnects.
  virtual void Connect(COndDeviceComm_0* channel) = 0;
  // Forgets stop requests of the run before, where a run does not do that itself.
  virtual void Prepare() {}
  virtual EONX_ERR_ERRCODE_ Execute(const std::string& text, OndScriptOutput output, void* context) = 0;
  // `path` as scripts see paths.
  virtual EONX_ERR_ERRCODE_ ExecuteFile(const std::string& path, OndScriptOutput output, void* context) = 0;
  virtual EONX_ERR_ERRCODE_ SetVariables(std::vector<TONXSCRIPTVARIABLE>& records) = 0;
  // Returns how many records were found.
  virtual std::uint64_t GetVariables(std::vector<TONXSCRIPTVARIABLE>& records) = 0;
  // `show` puts on the screen what the script has printed; a processor that knows when the script asks or waits calls
  // it before.
  virtual void ShowBeforeWaiting(std::function<void()> /*show*/) {}
  // Where the questions of scripts are answered from now on; null: as if there were no desk. The desk stays the
  // caller's.
  virtual void UseDesk(AnswerDesk* desk) = 0;
  // Why the last script failed, in lines for standard error; empty where nothing more is known than its output says.
  virtual std::string TakeFailure() { return {}; }
  // Asks the running script to end. [any thread]
  virtual void Stop() = 0;
  // The same when the process has been asked to end. A processor that asks its questions itself tells the user, or
  // dismisses the questions when nobody may be there. [where an Interrupt calls]
  virtual void StopFor(const InterruptCause&) { Stop(); }
  // Dismisses the question that is open, as by Cancel; to be called again and again while nobody answers. [any thread]
  virtual void DismissQuestion() = 0;
};

// Sets up the channel, runs the scripts, prints their output and the values asked for, writes the reports. Returns the
// process's exit code.
// `program` begins the messages on standard error.
int RunCommand(std::string_view program, const RunArguments& arguments, ScriptProcessor& processor);

} // namespace host
