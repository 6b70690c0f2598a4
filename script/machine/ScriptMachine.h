// Runs a program: its code, on a stack of its own, so that a call of a script is no call of the host's.
#pragma once

#include "script/code/Code.h"
#include "script/machine/ScriptWatcher.h"
#include "script/machine/ValueStack.h"
#include "script/program/RunContext.h"
#include "script/program/ScriptProgram.h"

#include <deque>
#include <vector>

// [one thread]
class ScriptMachine final : public FunctionExecutor {
public:
  // The program, which must outlive the machine, is read. The watcher, if any, sees the whole run.
  explicit ScriptMachine(ScriptProgram& program, ScriptWatcher* watcher = nullptr);
  ~ScriptMachine();
  ScriptMachine(const ScriptMachine&) = delete;
  ScriptMachine& operator=(const ScriptMachine&) = delete;

  ScriptError ExecuteMain();
  // Runs the function of this name that the main program declares or sees, with the main program's variables at zero or
  // empty. Arguments that were evaluated without knowing the function take its parameters' types now. `result` is
  // untyped and may be null.
  ScriptError ExecuteFunction(std::string_view name, ScriptArguments arguments, CONXScriptVariable* result);
  ScriptError ExecuteFunction(CONXScriptProgramFunc& function, CONXScriptVariable* outer, ScriptArguments arguments,
                              CONXScriptVariable* result);

  // Gives functions of another machine among the arguments numbers of this one.
  void AdoptFunctions(ScriptArguments arguments);

  // Where the error that ended the run is reported.
  std::uint32_t Place() const { return m_place; }

  // An instruction that was running when the run failed.
  struct Activation {
    const Code* code;
    std::size_t instruction; // number
    const CONXScriptVariable* frame;
  };
  // The instruction that failed, and the calls that led there, the latest first; of many only `most` at both ends.
  // `count` becomes their number. Empty when no code had run. Until the machine runs again.
  std::vector<Activation> FailedCalls(std::size_t most, std::size_t* count) const;

private:
  struct Frame { // of a function that waits for another one
    const Instruction* next;
    CONXScriptVariable* base;
    const Code* code;
  };
  static constexpr std::size_t kMostFrames = (std::size_t{32} << 20) / sizeof(Frame);

  static const Instruction* EndInstruction();
  void NoteFailure(const Activation& failed);
  ScriptError Dispatch(const Code* code, CONXScriptVariable* base);
  const Code& CodeOf(CONXScriptProgramFunc& function, bool hasReferences = false);
  void EnterMain(std::size_t frameSize);
  CONXScriptVariable* NewFrame(CONXScriptVariable* base, std::size_t moved, std::size_t size);
  void LeavePiece(CONXScriptVariable* result);
  CONXScriptVariable* OuterFrame(CONXScriptVariable* base, std::uint32_t hops) const;
  ScriptError CallBuiltIn(CONXScriptFunc& function, CONXScriptVariable* call, std::size_t count, bool wantsResult);
  ScriptError BindArgument(const ScriptParameter& parameter, CONXScriptVariable* argument);
  DataType ReceiverOf(std::uint64_t k, CONXScriptVariable* base, std::uint32_t slot) const;
  ScriptError BinaryGeneral(const Instruction& instruction, CONXScriptVariable* base);
  ScriptError UnaryGeneral(const Instruction& instruction, CONXScriptVariable* base);
  ScriptError ConvertGeneral(const Instruction& instruction, CONXScriptVariable* base);
  ScriptError CheckReference(const CONXScriptVariable& argument, const CONXScriptVariable& callee, std::size_t index);

  ScriptProgram& m_program;
  RunContext& m_context;
  ScriptWatcher* const m_watcher;
  ValueStack m_stack;
  std::vector<Frame> m_frames;
  CONXScriptVariable* m_main = nullptr; // the main program's frame
  CONXScriptVariable* m_top = nullptr;  // behind the arguments of the built-in that runs
  CONXScriptVariable* m_end = nullptr;  // of the current piece of the stack
  std::uint32_t m_place;
  // Where reading was at last in a function that a built-in called back, and so where the built-in's error is reported.
  std::uint32_t m_calledBack = kNoPlace;
  std::uint32_t m_returnPlace = kNoPlace; // of the function that the last such call ran
  // Of the dispatches that have failed, the innermost first: a function that a built-in called back has one of its own.
  static constexpr std::size_t kMostFailures = 16;
  Activation m_failures[kMostFailures] = {};
  std::size_t m_failureCount = 0;
  std::deque<std::unique_ptr<Code>> m_code;
  std::deque<std::unique_ptr<CONXScriptFunc>> m_adopted; // functions that another run passed in
};
