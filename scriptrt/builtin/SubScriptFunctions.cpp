#include "scriptrt/builtin/SubScriptFunctions.h"

#include "platform/Platform.h"
#include "scriptrt/builtin/RunWithBuiltIns.h"
#include "util/ScriptFile.h"

ScriptError CONXSubScriptOp::RunFile(const SysCall& call, FunctionStart* function) const {
  const std::optional<std::string> path = platform::FullPath(call.PathAt(0));
  const SharedText file =
      call.VariableAt(0).GetSharedText(); // as passed, whatever the sub-script does to the caller's variable
  std::string text;
  const ScriptFileResult read = path ? ReadScriptFile(*path, &text) : ScriptFileResult::kCannotOpen;
  if (read != ScriptFileResult::kRead)
    return read == ScriptFileResult::kTooLong ? kOutOfMemory : kSystemFunctionFailed;
  RunContext context(call.context);
  const std::string folder = FolderOfScript(*path);
  const ScriptError error =
      RunWithBuiltIns(Services(), {context, text, folder, nullptr, function, call.result, nullptr, *path});
  if (error != kScriptOk && Services().output)
    Write(("in subscript \"" + std::string(file.Bytes()) + "\"\n").c_str());
  return error;
}

ScriptError CONXExecuteSubScript::Perform(const SysCall& call) {
  return RunFile(call, nullptr);
}

ScriptError CONXExecuteSubScriptFunc::Perform(const SysCall& call) {
  FunctionStart start{std::string(call.TextAt(1)), call.arguments.From(2)};
  return RunFile(call, &start);
}
