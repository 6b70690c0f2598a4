// Runs scripts on a channel: what the Script Processor object does, without its window. Portable; `ondscript` uses it
// directly.
#pragma once

#include "frame/contract/OndDeviceClient.h"
#include "script/RunScript.h"
#include "scriptrt/builtin/ExternalVariables.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

class FailureObserver;
class Prompter;

// What is run of a text, and what becomes of it.
struct SessionRun {
  std::string_view text;                // followed by a zero byte
  const char* function = nullptr;       // without parameters; null: the main program
  CONXScriptVariable* result = nullptr; // untyped; receives the function's value
  RunFailure failure{};                 // how the run ended, which its output does not tell then
};

// [one thread at a time, but for StopScript]
class ScriptSession {
public:
  // `lockOwner` is the owner that the channel is locked for; it only serves as an identity.
  explicit ScriptSession(void* lockOwner);
  ~ScriptSession();
  ScriptSession(const ScriptSession&) = delete;
  ScriptSession& operator=(const ScriptSession&) = delete;

  // The channel stays the caller's; null disconnects. A run that is under way keeps the channel it began with. [any
  // thread]
  void SetChannel(COndDeviceComm_0* channel);
  // Who answers a script's questions (null: nobody, they count as cancelled). Stays the caller's.
  void SetPrompter(Prompter* op);
  // Who is told why a run has failed, where wanted. Stays the caller's.
  void SetFailureObserver(FailureObserver* failures);
  // `show` is called before a script asks or waits, for an output function that holds back what it is given.
  void ShowBeforeWaiting(std::function<void()> show);

  // Runs a script text with the channel locked. A zero byte must follow the text. `baseDirectory` null or empty: the
  // process's current directory. `output` may be null. Returns EONX_ERR_NONE, _NO_CHANNEL, _LOCKED, _OUT_OF_MEMORY or
  // _SCRIPT. A failed script's diagnostic line is its last output.
  EONX_ERR_ERRCODE_ ExecuteScript(std::string_view text, const char* baseDirectory, OndScriptOutput output,
                                  void* outputContext);
  // The same for a file; its folder is the base directory. Also EONX_ERR_EMPTY_PATH, _FILE_OPEN, _FILE_READ.
  EONX_ERR_ERRCODE_ ExecuteScriptFile(const char* path, OndScriptOutput output, void* outputContext);

  // The same for a text that is a part of what the caller shows, with the current directory for a folder.
  EONX_ERR_ERRCODE_ Execute(SessionRun& run, OndScriptOutput output, void* outputContext);

  // Variables that every run sees, and that keep what the script left in them. See ONX_CALL_SET_VARIABLES.
  EONX_ERR_ERRCODE_ SetVariables(const TONXSCRIPTVARIABLE* records, std::size_t count, ExistingVariables existing);
  EONX_ERR_ERRCODE_ GetVariables(TONXSCRIPTVARIABLE* records, std::size_t count, std::uint64_t* foundCount);

  // The variables themselves. [while nothing runs]
  ExternalVariables& Variables();

  // Forgets stop requests made before this moment. Called where a run is asked for, by whoever asks for it.
  void PrepareRun();
  // Asks the running script to end: loops and whatever waits look at this. [any thread; natively also a signal handler]
  void StopScript();
  // The same for a run that nobody wants any more: parsing, every call and every built-in function look at this
  // too. [any thread]
  void AbandonScript();
  // The same for good. From now on a run makes no operation of the channel but `Unlock`, and writes no output. [any
  // thread]
  void Sever();

private:
  struct Body;
  std::unique_ptr<Body> m_body;
};
