#include "script/program/ScriptProgram.h"

#include "script/program/ProgramReader.h"

CONXScriptProgramFunc::CONXScriptProgramFunc(ScriptProgram& ofProgram)
    : CONXScriptFunc(Origin::kProgram), program(ofProgram) {}

ScriptError CONXScriptProgramFunc::Execute(RunContext&, ScriptArguments arguments, CONXScriptVariable* result) {
  return program.executor->ExecuteFunction(*this, nullptr, arguments, result);
}

ScriptProgram::ScriptProgram(std::string_view text, RunContext& runContext)
    : context(runContext), scanner(text, names) {
  CONXScriptProgramFunc& main = functions.emplace_back(*this);
  main.name = names.Intern("@MAIN"); // no identifier, so that no script can name it
  main.body.number = ++bodyCount;
  callables.push_back(&main);
}

ScriptProgram::~ScriptProgram() = default;

void ScriptProgram::AddPredefined(std::string_view name, CONXScriptVariable& variable) {
  Declaration declared{DeclarationKind::kPredefinedVariable};
  declared.name = names.Intern(name);
  declared.type = static_cast<std::uint8_t>(variable.GetType());
  declared.slot = static_cast<std::uint32_t>(predefinedVariables.size());
  predefinedVariables.push_back(&variable);
  declarations.push_back(declared);
  scopes.DeclareOutside(static_cast<DeclarationIndex>(declarations.size() - 1));
}

void ScriptProgram::AddPredefined(std::string_view name, CONXScriptFunc& function) {
  Declaration declared{DeclarationKind::kFunction};
  declared.name = names.Intern(name);
  declared.slot = AddCallable(function);
  declarations.push_back(declared);
  scopes.DeclareOutside(static_cast<DeclarationIndex>(declarations.size() - 1));
}

std::uint32_t ScriptProgram::AddCallable(CONXScriptFunc& function) {
  callables.push_back(&function);
  return static_cast<std::uint32_t>(callables.size() - 1);
}

ScriptError ScriptProgram::Parse(ProblemSink* problems) {
  ProgramReader reader(*this, problems);
  return reader.ParseProgram();
}

// The main body's names stay visible after reading.
DeclarationIndex ScriptProgram::FindInMain(std::string_view name) {
  return scopes.Find(names.Intern(name));
}
