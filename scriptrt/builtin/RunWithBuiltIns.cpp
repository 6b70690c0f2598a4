#include "scriptrt/builtin/RunWithBuiltIns.h"

#include "scriptrt/builtin/BuiltIns.h"
#include "scriptrt/builtin/ExternalVariables.h"
#include "util/NoThrow.h"

namespace {

ScriptError SetUpAndRun(const RunServices& services, const RunRequest& request) {
  const BuiltIns builtIns(services);
  const RunSetup setup{request.context,
                       request.text,
                       std::string(request.baseDirectory),
                       services.output,
                       builtIns.ByName(),
                       request.variables ? request.variables->ByName() : decltype(RunSetup::externalVariables){},
                       request.function,
                       request.result,
                       nullptr,
                       request.failure,
                       request.file,
                       services.failures};
  return RunScript(setup);
}

} // namespace

ScriptError RunWithBuiltIns(const RunServices& services, const RunRequest& request) noexcept {
  try {
    return SetUpAndRun(services, request);
  } catch (...) { // no memory; the run itself throws nothing
    NoThrow([&] { services.output.Write(DiagnosticLine(kOutOfMemory, {}, 0, RunPhase::kParsing).data()); });
    return kOutOfMemory;
  }
}
