// Somebody's lines at a terminal, run as they come.
#pragma once

#include "host/commandline/StandardStreams.h"
#include "host/lineedit/LineEditor.h"
#include "runner/NativeProcessor.h"
#include "scriptrt/run/PromptProgram.h"

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

// [one thread]
class Prompt {
public:
  // The processor, connected, must outlive this. `channelState` tells after an input what is wrong with the channel.
  Prompt(NativeProcessor& processor, const std::string& historyFile, std::function<std::string()> channelState);

  // Reads and runs inputs until the user leaves. False when standard output cannot be written.
  bool Run(const std::string& greeting);

private:
  host::Typed ReadLine();
  // Takes what has been typed so far, which is cleared when nothing is missing. False: the user leaves.
  bool Take();
  bool TakeWord(const std::string& word, const std::string& rest);
  void Execute(PromptProgram::Kind kind);
  static void PrintOutput(void* prompt, const char* text);
  void ShowFailure(const SessionRun& run, EONX_ERR_ERRCODE_ result);
  void ShowFunction(const std::string& name);
  void ShowProblem();
  void Print(const std::string& lines);

  NativeProcessor& m_processor;
  host::LineEditor m_editor;
  host::StandardOutput m_output;
  PromptProgram m_program;
  const std::function<std::string()> m_channelState;
  std::string m_input;
  std::atomic<bool> m_isLeaving = false; // by the user's word, or because the process has been asked to end
};
