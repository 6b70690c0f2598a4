#include "script/machine/ScriptMachine.h"

#include "script/code/Compiler.h"

#include <algorithm>
#include <functional>
#include <new>

namespace {

// A function that another run passed in: the other run's machine runs it.
class PassedFunction final : public CONXScriptFunc {
public:
  PassedFunction(ScriptMachine& machine, CONXScriptFunc& function, CONXScriptVariable* outer)
      : m_machine(machine), m_delegate(function), m_outer(outer) {
    for (std::size_t i = 0; i < function.GetParameterCount(); ++i)
      AddParameter(function.GetParameter(i));
  }

  bool CheckArgumentCount(std::size_t count) const override { return m_delegate.CheckArgumentCount(count); }
  ScriptError Execute(RunContext& context, ScriptArguments arguments, CONXScriptVariable* result) override {
    if (!m_delegate.IsOfProgram())
      return m_delegate.Execute(context, arguments, result);
    m_machine.AdoptFunctions(arguments);
    return m_machine.ExecuteFunction(static_cast<CONXScriptProgramFunc&>(m_delegate), m_outer, arguments, result);
  }

private:
  ScriptMachine& m_machine;
  CONXScriptFunc& m_delegate;
  CONXScriptVariable* m_outer;
};

} // namespace

ScriptMachine::ScriptMachine(ScriptProgram& program, ScriptWatcher* watcher)
    : m_program(program), m_context(program.context), m_watcher(watcher), m_place(program.Place()) {
  program.executor = this;
  m_frames.reserve(64);
}

ScriptMachine::~ScriptMachine() {
  m_program.executor = nullptr;
}

const Code& ScriptMachine::CodeOf(CONXScriptProgramFunc& function, bool hasReferences) {
  const Code*& code = function.code[hasReferences ? 1 : 0];
  if (!code) {
    m_code.push_back(Compiler(m_program, function, {hasReferences, m_watcher != nullptr}).Compile());
    code = m_code.back().get();
  }
  return *code;
}

CONXScriptVariable* ScriptMachine::OuterFrame(CONXScriptVariable* base, std::uint32_t hops) const {
  for (; hops > 0; --hops)
    base = base[1].target;
  return base;
}

// --- running

ScriptError ScriptMachine::ExecuteMain() {
  if (m_context.StopEvent().IsAbandoned())
    return kProcessingAborted;
  const Code& code = CodeOf(m_program.Main());
  EnterMain(code.frameSize);
  return Dispatch(&code, m_main);
}

void ScriptMachine::EnterMain(std::size_t frameSize) {
  if (m_stack.Begin() + frameSize > m_stack.End())
    m_stack.AddPiece(frameSize);
  m_main = m_stack.Begin();
  m_top = m_main + frameSize;
  m_end = m_stack.End();
}

ScriptError ScriptMachine::ExecuteFunction(std::string_view name, ScriptArguments arguments,
                                           CONXScriptVariable* result) {
  const DeclarationIndex found = m_program.FindInMain(name);
  if (found == kNoIndex)
    return kUnknownIdentifier;
  const Declaration& declared = m_program.declarations[found];
  if (declared.IsVariable())
    return kUnknownObjectType;
  CONXScriptFunc& function = *m_program.callables[declared.slot];
  AdoptFunctions(arguments);
  for (std::size_t i = 0; i < std::min(arguments.size(), function.GetParameterCount()); ++i)
    if (const ScriptError error = BindArgument(function.GetParameter(i), &arguments[i]))
      return error;
  if (!function.CheckArgumentCount(arguments.size()))
    return kWrongParameterCount;
  EnterMain(m_program.Main().slotCount);
  const CONXScriptBlock& body = m_program.Main().body;
  for (DeclarationIndex i = body.firstDeclaration; i != kNoIndex; i = m_program.declarations[i].next)
    if (const Declaration& variable = m_program.declarations[i]; variable.kind == DeclarationKind::kVariable)
      m_main[variable.slot].Reset(variable.Type());
  if (!function.IsOfProgram())
    return function.Execute(m_context, arguments, result);
  return ExecuteFunction(static_cast<CONXScriptProgramFunc&>(function), m_main, arguments, result);
}

// An argument that was evaluated without knowing the parameter takes its type now.
ScriptError ScriptMachine::BindArgument(const ScriptParameter& parameter, CONXScriptVariable* argument) {
  const bool isFunction = argument->type == DataType::kFunction;
  if (parameter.isFunction != isFunction)
    return kTypeError;
  if (isFunction || (argument->IsReference() && parameter.TakesReferenceTo(argument->GetType())))
    return kScriptOk;
  CONXScriptVariable converted(parameter.type);
  if (const ScriptError error = converted.Assign(*argument))
    return error;
  *argument = std::move(converted);
  return kScriptOk;
}

// Numbers of functions belong to a program: another program's get a number in this one.
void ScriptMachine::AdoptFunctions(ScriptArguments arguments) {
  ScriptMachine* const other = arguments.Machine();
  if (!other || other == this)
    return;
  for (CONXScriptVariable& argument : arguments) {
    if (argument.type != DataType::kFunction)
      continue;
    CONXScriptFunc& function = *other->m_program.callables[argument.function];
    m_adopted.push_back(std::make_unique<PassedFunction>(*other, function, argument.target));
    argument.function = m_program.AddCallable(*m_adopted.back());
  }
}

ScriptError ScriptMachine::ExecuteFunction(CONXScriptProgramFunc& function, CONXScriptVariable* outer,
                                           ScriptArguments arguments, CONXScriptVariable* result) {
  bool hasReferences = false;
  for (const CONXScriptVariable& argument : arguments)
    hasReferences |= argument.IsReference();
  const Code& code = CodeOf(function, hasReferences);
  CONXScriptVariable* const top = m_top;
  const bool needsPiece = top + code.frameSize > m_end;
  if (needsPiece)
    m_stack.AddPiece(code.frameSize);
  CONXScriptVariable* const base = needsPiece ? m_stack.Begin() : top;
  m_end = m_stack.End();
  base[0].type = result ? DataType::kNone : DataType::kAbsent;
  base[1].target = outer;
  for (std::size_t i = 0; i < arguments.size(); ++i)
    base[CONXScriptProgramFunc::kFirstParameter + i] = std::move(arguments[i]);
  m_frames.push_back({EndInstruction(), base, &code});
  const ScriptError error = Dispatch(&code, base);
  if (error != kScriptOk) { // which ends the run, wherever its frames are
    m_calledBack = m_place;
    return error;
  }
  if (result)
    *result = std::move(base[0]);
  if (needsPiece)
    m_stack.DropPiece();
  m_end = m_stack.End();
  m_top = top;
  if (m_returnPlace != kNoPlace)
    m_calledBack = m_returnPlace;
  return kScriptOk;
}

// --- what is told of a failure

void ScriptMachine::NoteFailure(const Activation& failed) {
  if (m_failureCount < kMostFailures)
    m_failures[m_failureCount++] = failed;
}

std::vector<ScriptMachine::Activation> ScriptMachine::FailedCalls(std::size_t most, std::size_t* count) const {
  std::vector<Activation> latest;
  std::vector<Activation> earliest; // a ring
  *count = 0;
  const auto take = [&](const Activation& call) {
    if (latest.size() < most)
      latest.push_back(call);
    else if (earliest.size() < most)
      earliest.push_back(call);
    else
      earliest[*count % most] = call;
    ++*count;
  };
  if (m_failureCount == 0)
    return {};
  std::size_t dispatch = 0;
  take(m_failures[dispatch]);
  for (auto frame = m_frames.rbegin(); frame != m_frames.rend(); ++frame) {
    if (frame->next == EndInstruction()) { // what called it back failed too
      if (++dispatch < m_failureCount)
        take(m_failures[dispatch]);
      continue;
    }
    const std::vector<Instruction>& instructions = frame->code->instructions;
    const std::less<> before;
    const bool isCall =
        !before(frame->next, instructions.data()) && before(frame->next, instructions.data() + instructions.size());
    if (isCall) // no mark of a piece of the stack
      take({frame->code, static_cast<std::size_t>(frame->next - instructions.data()) - 1, frame->base});
  }
  if (earliest.size() == most)
    std::ranges::rotate(earliest, earliest.begin() + static_cast<std::ptrdiff_t>(*count % most));
  latest.insert(latest.end(), earliest.begin(), earliest.end());
  return latest;
}

// --- the stack

// A frame in a new piece, with the slots that the call has prepared.
CONXScriptVariable* ScriptMachine::NewFrame(CONXScriptVariable* base, std::size_t moved, std::size_t size) {
  m_stack.AddPiece(size);
  CONXScriptVariable* const frame = m_stack.Begin();
  m_end = m_stack.End();
  for (std::size_t i = 1; i < moved; ++i)
    frame[i] = std::move(base[i]);
  return frame;
}

void ScriptMachine::LeavePiece(CONXScriptVariable* result) {
  *result = std::move(*m_stack.Begin());
  m_stack.DropPiece();
  m_end = m_stack.End();
}

// --- built-ins

ScriptError ScriptMachine::CallBuiltIn(CONXScriptFunc& function, CONXScriptVariable* call, std::size_t count,
                                       bool wantsResult) {
  CONXScriptVariable* const first = call + CONXScriptProgramFunc::kFirstParameter;
  call->type = DataType::kNone;
  m_top = first + count;
  m_calledBack = kNoPlace;
  const ScriptError error = function.Execute(m_context, {first, count, this}, wantsResult ? call : nullptr);
  for (CONXScriptVariable* argument = first; argument != first + count; ++argument)
    argument->Release();
  return error;
}

ScriptError ScriptMachine::CheckReference(const CONXScriptVariable& argument, const CONXScriptVariable& callee,
                                          std::size_t index) {
  const CONXScriptFunc& function = *m_program.callables[callee.function];
  if (index >= function.GetParameterCount())
    return kScriptOk;
  const ScriptParameter parameter = function.GetParameter(index);
  const bool fits =
      argument.type == DataType::kFunction ? parameter.isFunction : parameter.TakesReferenceTo(argument.GetType());
  return fits ? kScriptOk : kTypeError;
}
