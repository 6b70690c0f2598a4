#include "scriptrt/run/PromptReading.h"

#include "script/program/ScriptProgram.h"
#include "scriptrt/builtin/BuiltIns.h"

#include <algorithm>

namespace {

Token Behind(ScriptProgram& program, const Token& token) {
  return program.scanner.Scan(token.end);
}

// Behind the closing brace of the function whose name this is. The text has been read, so there is one.
std::uint32_t EndOfFunction(ScriptProgram& program, const Token& name) {
  unsigned depth = 0;
  for (Token token = Behind(program, name); token.kind != TokenKind::kEnd; token = Behind(program, token)) {
    if (IsPunctuation(token, '{'))
      ++depth;
    else if (IsPunctuation(token, '}') && --depth == 0)
      return token.end;
  }
  return name.end;
}

// Whether a text is the name of a function, and nothing else.
bool IsFunctionName(ScriptProgram& program, std::size_t start) {
  const Token name = program.scanner.Scan(static_cast<std::uint32_t>(start));
  if (name.kind != TokenKind::kIdentifier || Behind(program, name).kind != TokenKind::kEnd)
    return false;
  const DeclarationIndex found = program.scopes.Find(name.value);
  return found != kNoIndex && program.declarations[found].kind == DeclarationKind::kFunction;
}

bool EndsWithOneValue(const ScriptProgram& program) {
  const CONXScriptBlock& main = program.functions.front().body;
  NodeIndex last = main.first;
  for (NodeIndex i = main.first; i < main.end; i = program.nodes[i].end) {
    if (program.nodes[i].kind != NodeKind::kFunction)
      return false;
    last = i;
  }
  if (last == main.end)
    return false;
  const CONXScriptBlock& body = program.functions[program.nodes[last].value].body;
  return body.first < body.end && program.nodes[body.first].kind == NodeKind::kAssignResult &&
         program.nodes[body.first + 1].value == body.end;
}

// Takes a definition out of the rest, where the ends of its lines stay: what is behind keeps its place.
void Blank(std::string& rest, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end; ++i) {
    if (rest[i] != '\n')
      rest[i] = ' ';
  }
}

// The definitions of the main body behind `start`, found by their names' places, token by token.
void FindDefinitions(ScriptProgram& program, const std::string& text, std::size_t start, PromptReading& reading) {
  Token before[2]; // `var` and the type, or whatever and `func`
  Token token = program.scanner.Scan(static_cast<std::uint32_t>(start));
  for (DeclarationIndex i = program.Main().body.firstDeclaration; i != kNoIndex; i = program.declarations[i].next) {
    const Declaration& declared = program.declarations[i];
    if (declared.place < start)
      continue;
    for (; token.start != declared.place; token = Behind(program, token)) {
      before[0] = before[1];
      before[1] = token;
    }
    const std::string name(text, token.begin, token.end - token.begin);
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    if (declared.kind == DeclarationKind::kVariable) {
      begin = before[0].begin;
      end = Behind(program, token).end; // the semicolon
      reading.variables.push_back({name, declared.Type()});
    } else {
      begin = before[1].begin;
      end = EndOfFunction(program, token);
      reading.functions.push_back({name, text.substr(begin, end - begin)});
    }
    Blank(reading.rest, begin - start, end - start);
    token = program.scanner.Scan(end);
  }
}

} // namespace

PromptReading ReadPrompt(const PromptText& parts, ExternalVariables& variables,
                         const std::vector<PromptVariable>& declared) {
  const std::string text = parts.Whole();
  RunContext context;
  ScriptProgram program(text, context);
  CONXScriptVariable anyVariable;
  program.AddPredefined("version", anyVariable);
  const BuiltIns builtIns({});
  for (const auto& [name, function] : builtIns.ByName())
    program.AddPredefined(name, *function);
  for (const auto& [name, variable] : variables.ByName())
    program.AddPredefined(name, *variable);
  for (const PromptVariable& variable : declared)
    program.AddPredefined(variable.name, anyVariable);

  PromptReading reading;
  const ScriptError error = program.Parse();
  const Token last = program.scanner.Scan(program.Place());
  reading.place = last.kind == TokenKind::kEnd ? text.size() : last.begin;
  if (error != kScriptOk) {
    reading.problem = ErrorText(error);
    reading.isUnfinished = reading.place >= parts.InputStart() + parts.input.size();
    reading.isFunctionName = IsFunctionName(program, parts.InputStart());
  } else if (last.kind != TokenKind::kEnd) { // a closing brace: nothing behind it would run
    reading.problem = ErrorText(kUnexpectedToken);
  } else {
    reading.isOneValue = EndsWithOneValue(program);
    reading.rest = parts.input + parts.back;
    FindDefinitions(program, text, parts.InputStart(), reading);
  }
  return reading;
}
