#include "script/RunScript.h"

#include "script/machine/ScriptMachine.h"
#include "script/program/ScriptProgram.h"
#include "util/NoThrow.h"

#include <new>
#include <optional>
#include <stdexcept>

namespace {

void AddNames(ScriptProgram& program, CONXScriptVariable& version, const RunSetup& setup) {
  program.AddPredefined("version", version);
  for (const auto& [name, function] : setup.builtIns)
    program.AddPredefined(name, *function);
  for (const auto& [name, variable] : setup.externalVariables)
    program.AddPredefined(name, *variable);
}

ScriptError Execute(ScriptMachine& machine, const RunSetup& setup) {
  if (setup.function)
    return machine.ExecuteFunction(setup.function->name, setup.function->arguments, setup.result);
  return machine.ExecuteMain();
}

// Want of memory surfaces as an exception from wherever a text or list grows; below this function everything is owned
// by objects.
template <typename Operation>
ScriptError WithoutExceptions(Operation operation) {
  try {
    return operation();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::length_error&) {
    return kOutOfMemory;
  } catch (...) { // a built-in or the host's own code threw something else
    return kSystemFunctionFailed;
  }
}

ScriptError RunProgram(const RunSetup& setup, RunFailure* reached) {
  setup.context.SetBaseDirectory(setup.baseDirectory.empty() ? platform::CurrentFolder() : setup.baseDirectory);
  CONXScriptVariable version;
  if (const ScriptError error = version.SetText(kLanguageVersion))
    return error;
  ScriptProgram program(setup.text, setup.context);
  AddNames(program, version, setup);

  std::optional<ScriptMachine> machine;
  const ScriptError error = WithoutExceptions([&] {
    const ScriptError parseError = program.Parse();
    if (parseError != kScriptOk)
      return parseError;
    reached->phase = RunPhase::kExecuting;
    machine.emplace(program, setup.watcher);
    return Execute(*machine, setup);
  });
  reached->offset = machine ? machine->Place() : program.Place();
  if (setup.failures && CodeWithinClass(error) != 0)
    NoThrow([&] {
      setup.failures->RunFailed({setup, error, reached->offset, program, machine ? &*machine : nullptr});
    });
  return error;
}

} // namespace

ScriptError RunScript(const RunSetup& setup) noexcept {
  RunFailure reached;
  const ScriptError error =
      platform::FreeStack() == 0 ? kOutOfMemory : WithoutExceptions([&] { return RunProgram(setup, &reached); });
  reached.error = error;
  if (setup.failure)
    *setup.failure = reached;
  else if (CodeWithinClass(error) != 0)
    NoThrow([&] { setup.output.Write(DiagnosticLine(error, setup.text, reached.offset, reached.phase).data()); });
  return error;
}
