#include "scriptrt/check/ProblemCollector.h"

#include "scriptrt/check/ForeignSyntax.h"
#include "scriptrt/check/NearNames.h"
#include "scriptrt/check/TextPlaces.h"
#include "util/AsciiCase.h"

#include <algorithm>
#include <array>

namespace {

// By Expectation. What follows is what was found.
constexpr std::array<std::string_view, static_cast<std::size_t>(Expectation::kCount)> kExpected = {
    "", // tells what is malformed
    "expected a statement",
    "expected `;` behind the statement",
    "expected `;` behind the declaration",
    "expected a type behind `var`",
    "expected a name behind the type",
    "expected a name behind `func`",
    "expected `(` behind the function's name",
    "expected `var` or `func` in front of a parameter",
    "expected `,` or `)` behind the parameter",
    "expected `(` in front of the condition",
    "expected `)` behind the condition",
    "expected `{`",
    "expected `{` behind `else`",
    "expected `}`",
    "expected an assignment",
    "expected a value",
    "expected `)` or an operator",
    "expected `(` behind the type",
    "expected `)` or an operator",
    "expected `(`",
    "expected `,` or `)` behind the argument",
    "expected a name behind `&`",
    "", // tells the name
};

bool IsAssignment(const Token& token) {
  return token.kind == TokenKind::kOperator && token.op == Operator::kAssign;
}
bool IsEquality(const Token& token) {
  return token.kind == TokenKind::kOperator && token.op == Operator::kEqual;
}
bool IsText(const Token& token) {
  return token.kind == TokenKind::kString || (token.kind == TokenKind::kMalformed && token.value == kErrorInString);
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// What a backslash in a string begins that is no escape; empty when all of them are good.
std::string_view BadEscape(std::string_view string) {
  constexpr std::string_view kEscapes = "\"\\nrt0123456789abcdefABCDEF";
  for (std::size_t at = string.find('\\'); at < string.size() - 1; at = string.find('\\', at + 2)) {
    if (string[at + 1] == '(')
      return string.substr(at, string.find(')', at) - at + 1);
    if (kEscapes.find(string[at + 1]) == std::string_view::npos)
      return string.substr(at, 2);
  }
  return {};
}

} // namespace

bool ProblemCollector::Take(const ReadProblem& problem) {
  if (problem.error == kUnknownIdentifier) {
    const auto isSame = [&](const UnknownName& unknown) { return unknown.name == problem.found.value; };
    const auto known = std::ranges::find_if(m_unknown, isSame);
    if (known != m_unknown.end()) {
      known->furtherLines.push_back(LineOf(m_program.scanner.Text(), problem.found.begin));
      return true;
    }
  }
  if (m_problems.size() == kMost)
    return false;
  m_problems.push_back(Describe(problem));
  if (problem.error == kUnknownIdentifier)
    m_unknown.push_back({.name = problem.found.value,
                         .problem = m_problems.size() - 1,
                         .hasHint = !m_problems.back().hint.empty(),
                         .isCalled = IsPunctuation(m_program.scanner.Scan(problem.found.end), '('),
                         .furtherLines = {}});
  return true;
}

// A name may turn out to be declared elsewhere, and be unknown at many places.
std::vector<ScriptProblem> ProblemCollector::Finish() {
  for (UnknownName& unknown : m_unknown) {
    ScriptProblem& problem = m_problems[unknown.problem];
    if (!unknown.hasHint)
      problem.hint = WhereDeclared(unknown, problem.range.begin);
    std::vector<std::uint64_t>& lines = unknown.furtherLines;
    lines.erase(std::unique(lines.begin(), lines.end()), lines.end());
    constexpr std::size_t kMostLines = 5;
    for (std::size_t i = 0; i < std::min(lines.size(), kMostLines); ++i)
      problem.message += (i == 0 ? "; also in line " : ", ") + std::to_string(lines[i]);
    if (lines.size() > kMostLines)
      problem.message += " and " + std::to_string(lines.size() - kMostLines) + " more";
  }
  return std::move(m_problems);
}

ScriptProblem ProblemCollector::Describe(const ReadProblem& problem) const {
  const std::string_view text = m_program.scanner.Text();
  const Token& found = problem.found;
  ScriptProblem described;
  described.message = std::string(ErrorText(problem.error)) + ": " + MessageOf(problem);
  described.hint = HintFor(problem);
  described.range = {found.begin, std::max(found.end, found.begin)};
  if (found.kind == TokenKind::kEnd) { // people look for it where the text seems to end
    const std::uint32_t end = EndOfTokenBefore(text, found.begin);
    described.range = {end, end};
  }
  described.mark = described.range;
  if (found.kind == TokenKind::kPunctuation || found.kind == TokenKind::kOperator) {
    const ForeignSign sign = FindForeignSign(text, found.begin);
    if (!sign.hint.empty())
      described.mark = {sign.begin, std::max(sign.end, found.end)};
  }
  const bool wantsEnd = problem.expected == Expectation::kSemicolon || problem.expected == Expectation::kDeclarationEnd;
  const std::uint32_t behind = EndOfTokenBefore(text, found.begin);
  if (wantsEnd && found.kind != TokenKind::kEnd && LineOf(text, behind) != LineOf(text, found.begin))
    described.related = {{behind, behind}, "here"};
  if (problem.expected == Expectation::kBlockEnd) {
    const std::uint32_t opened = m_program.scanner.Scan(problem.opened).begin;
    described.related = {{opened, opened + 1}, "the block begins here"};
  }
  return described;
}

std::string_view ProblemCollector::TextOf(const Token& token) const {
  return m_program.scanner.Text().substr(token.begin, token.end - token.begin);
}

std::string ProblemCollector::MessageOf(const ReadProblem& problem) const {
  const Token& found = problem.found;
  const std::string token = found.kind == TokenKind::kEnd ? "the end of the script" : Quoted(TextOf(found));
  const auto subject = [&] { return Quoted(m_program.names.SpellingOf(problem.subject)); };
  switch (problem.expected) {
  case Expectation::kWellFormedToken:
    if (!IsText(found))
      return token + " is no number";
    if (const std::string_view escape = BadEscape(TextOf(found)); !escape.empty())
      return Quoted(escape) + " is no escape";
    return "the string has no closing quote on its line";
  case Expectation::kDeclaredName:
    return Quoted(TextOf(found)) + " is not known here";
  case Expectation::kType:
    return found.kind == TokenKind::kIdentifier
               ? Quoted(TextOf(found)) + " is no type"
               : std::string(kExpected[static_cast<std::size_t>(problem.expected)]) + ", found " + token;
  case Expectation::kStatement:
    return (found.kind == TokenKind::kEnd ? "expected `}`: a block has no end, found "
                                          : "expected a statement, found ") +
           token;
  case Expectation::kBlockEnd:
    return "expected `}`: the block that begins in line " +
           std::to_string(LineOf(m_program.scanner.Text(), m_program.scanner.Scan(problem.opened).begin)) +
           " has no end";
  case Expectation::kAssignment:
    return subject() + " is a variable: expected an assignment behind it, found " + token;
  case Expectation::kArgumentsBegin:
    return subject() + " is a function: expected `(` behind it, found " + token;
  default:
    return std::string(kExpected[static_cast<std::size_t>(problem.expected)]) + ", found " + token;
  }
}

// --- hints

std::string ProblemCollector::HintFor(const ReadProblem& problem) const {
  const std::string_view text = m_program.scanner.Text();
  const Token& found = problem.found;
  const auto subject = [&] { return std::string(m_program.names.SpellingOf(problem.subject)); };
  if (problem.expected == Expectation::kWellFormedToken)
    return HintForMalformed(problem);
  if (problem.expected == Expectation::kDeclaredName)
    return HintForName(problem);
  if (problem.expected == Expectation::kElseBlock && IsName(found, kNameIf))
    return "there is no `else if`: write `else { if (...) { ... } }`";
  if (problem.expected == Expectation::kType || problem.expected == Expectation::kDeclarationEnd ||
      problem.expected == Expectation::kVariableName || problem.expected == Expectation::kParameter)
    if (std::string hint = HintForDeclaration(problem); !hint.empty())
      return hint;
  if (found.kind == TokenKind::kIdentifier && found.begin > 0 && IsDigit(text[found.begin - 1]))
    return "numbers are 42, 0x2A or 0b101010; a name does not begin with a digit";
  if (found.kind == TokenKind::kIdentifier)
    if (const std::string_view hint = HintForWord(TextOf(found), WordPlace::kInside); !hint.empty())
      return std::string(hint);
  if (IsPunctuation(found, '.')) {
    const bool isFraction = found.begin > 0 && IsDigit(text[found.begin - 1]);
    return isFraction ? "numbers are whole: count in tenths or thousandths"
                      : "there are no members: only numbers and strings";
  }
  if (found.kind == TokenKind::kPunctuation || found.kind == TokenKind::kOperator)
    if (const ForeignSign sign = FindForeignSign(text, found.begin); !sign.hint.empty())
      return std::string(sign.hint);
  switch (problem.expected) {
  case Expectation::kStatement:
    if (IsPunctuation(found, ';'))
      return "one `;` too many: there is none behind `}`";
    if (IsPunctuation(found, '{'))
      return "a block stands behind `if`, `else`, `while` or the heading of a function only";
    return found.kind == TokenKind::kEnd ? "" : "a statement begins with a name or with `var`, `func`, `if`, `while`";
  case Expectation::kSemicolon:
    if (IsAssignment(found))
      return "an assignment has no value: write two statements";
    return IsPunctuation(found, ',') ? "write a statement for each" : "";
  case Expectation::kConditionEnd:
  case Expectation::kParenthesisEnd:
  case Expectation::kConversionEnd:
  case Expectation::kArgumentsGoOn:
    return IsAssignment(found) ? "`==` compares; `=` assigns and has no value" : "";
  case Expectation::kOperand:
    if (const ForeignSign sign = FindForeignSign(text, std::max(EndOfTokenBefore(text, found.begin), 1U) - 1);
        sign.end - sign.begin == 2)
      return std::string(sign.hint);
    if (IsPunctuation(found, ')') && text.substr(0, EndOfTokenBefore(text, found.begin)).ends_with(','))
      return "one `,` too many";
    return IsPunctuation(found, '{') ? "there are no lists: only numbers and strings" : "";
  case Expectation::kAssignment:
    if (IsEquality(found))
      return "`=` assigns, `==` compares";
    if (IsPunctuation(found, '('))
      return "only a function can be called";
    return IsPunctuation(found, ';') ? "a statement assigns a value or calls a function" : "";
  case Expectation::kArgumentsBegin:
    if (IsOperatorOf(found, kAssignmentOperator))
      return "a function's name is assigned to in that function only";
    return "`" + subject() + "(...)` calls it, `&" + subject() + "` passes it on as an argument";
  case Expectation::kConditionBegin:
    return "the condition stands in parentheses: `if (CONDITION) { ... }`";
  case Expectation::kConversionBegin:
    return "a type in front of a value converts it: `int64(x)`";
  case Expectation::kBlock:
    return "the braces are never left out: `{ ... }`";
  case Expectation::kElseBlock:
    return "the braces are never left out: `else { ... }`";
  case Expectation::kParametersBegin:
    return "also without parameters: `func NAME() { ... }`";
  case Expectation::kReferredName:
    return "`&` passes a variable or function on; as an operator it stands between two values";
  default:
    return "";
  }
}

// What to write instead, with the names of the script.
std::string ProblemCollector::HintForDeclaration(const ReadProblem& problem) const {
  constexpr std::string_view kTypes = "the types are `dword`, `int32`, `uint64`, `int64` and `string`";
  const Token& found = problem.found;
  const Token next = m_program.scanner.Scan(std::max(found.end, found.begin));
  if (problem.expected == Expectation::kDeclarationEnd) {
    const Declaration& declared = m_program.declarations.back();
    const std::string name(m_program.names.SpellingOf(declared.name));
    if (IsAssignment(found))
      return "a declaration sets no value: write `" + name + " = ...;` behind it, a statement of its own";
    return IsPunctuation(found, ',') ? "every variable has a `var TYPE` of its own" : "";
  }
  if (found.kind == TokenKind::kDecimal && problem.expected == Expectation::kVariableName)
    return "a name does not begin with a digit";
  if (found.kind != TokenKind::kIdentifier)
    return problem.expected == Expectation::kType ? std::string(kTypes) : "";
  if (problem.expected == Expectation::kVariableName)
    return "";
  const std::string word(TextOf(found));
  if (problem.expected == Expectation::kParameter) {
    if (TypeOfName(found.value) != DataType::kNone && next.kind == TokenKind::kIdentifier)
      return "write `var " + word + " " + std::string(TextOf(next)) + "`";
    return "a parameter is `var TYPE NAME` or `func NAME`: write `var int32 " + word + "`, say";
  }
  if (const std::string_view hint = HintForWord(word, WordPlace::kType); !hint.empty())
    return std::string(hint);
  if (next.kind == TokenKind::kIdentifier && TypeOfName(next.value) != DataType::kNone)
    return "the type comes first: write `var " + std::string(TextOf(next)) + " " + word + ";`";
  const std::vector<std::string_view> types = {"dword", "uint32", "int32", "long", "uint64", "int64", "string"};
  if (const std::string_view near = NearestName(word, types); next.kind == TokenKind::kIdentifier && !near.empty())
    return "did you mean `" + std::string(near) + "`?";
  if (next.kind != TokenKind::kIdentifier)
    return "the type is missing: write `var int32 " + word + ";` or `var string " + word + ";`, say";
  return std::string(kTypes);
}

std::string ProblemCollector::HintForName(const ReadProblem& problem) const {
  const std::string word(TextOf(problem.found));
  const Token next = m_program.scanner.Scan(problem.found.end);
  if (TypeOfName(problem.found.value) != DataType::kNone)
    return "a declaration begins with `var`: write `var " + word + " " +
           (next.kind == TokenKind::kIdentifier ? std::string(TextOf(next)) : "NAME") + ";`";
  if (EqualsIgnoringCase(word, "return") && problem.function != ReadProblem::kNoName)
    return "a function's value is assigned to its name: write `" +
           std::string(m_program.names.SpellingOf(problem.function)) + " = ...;`";
  if (const std::string_view hint = HintForWord(word, WordPlace::kName); !hint.empty())
    return std::string(hint);
  if (const std::string_view near = NearName(word); !near.empty())
    return "did you mean `" + std::string(near) + "`?";
  return "";
}

std::string ProblemCollector::HintForMalformed(const ReadProblem& problem) const {
  if (!IsText(problem.found))
    return "numbers are 42, 0x2A or 0b101010, with letters U, S, L, H behind a `:`";
  const std::string_view escape = BadEscape(TextOf(problem.found));
  if (escape.empty())
    return "a quote inside of a string is written `\\\"`, a line end `\\n`";
  return escape.starts_with("\\(") ? "a byte is `\\(65)`, `\\(x41)` or `\\(b1000001)`, at most 255"
                                   : "a backslash itself is written `\\\\`";
}

// Among the names that are visible where the reader is, and the language's words.
std::string_view ProblemCollector::NearName(std::string_view wanted) const {
  std::vector<std::string_view> names = {"var", "func", "if", "else", "while"};
  for (NameId name = 0; name < m_program.names.Count(); ++name)
    if (m_program.scopes.Find(name) != kNoIndex)
      names.push_back(m_program.names.SpellingOf(name));
  return NearestName(wanted, names);
}

// A declaration of the name that is out of sight at `place`.
std::string ProblemCollector::WhereDeclared(const UnknownName& unknown, std::uint32_t place) const {
  const std::string_view text = m_program.scanner.Text();
  const std::string name = Quoted(m_program.names.SpellingOf(unknown.name));
  for (const Declaration& declared : m_program.declarations) {
    if (declared.name != unknown.name || declared.body == 0)
      continue;
    const std::string line = std::to_string(LineOf(text, m_program.scanner.Scan(declared.place).begin));
    if (declared.place > place)
      return name + " is declared further down, in line " + line + "; it must stand above";
    if (declared.IsParameter())
      return name + " is a parameter in line " + line +
             "; a function directly inside another does not see its parameters: copy it to a variable there";
    return name + " is declared in line " + line + ", in a block that has ended; declare it in front of that block";
  }
  const std::string plain(m_program.names.SpellingOf(unknown.name));
  if (unknown.isCalled)
    return "no function has this name; `func " + plain + "(...) { ... }` must stand above its calls";
  return "declare it above, `var int32 " + plain + ";` say; if the host sets it, write `# expects: " + plain +
         " int32`";
}
