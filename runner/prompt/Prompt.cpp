#include "runner/prompt/Prompt.h"

#include "host/commandline/ExitCodes.h"
#include "host/support/Interrupt.h"
#include "host/support/Text.h"
#include "runner/prompt/BuiltInHelp.h"
#include "script/value/NumberText.h"

#include <algorithm>

namespace {

constexpr const char* kFirstPrompt = "> ";
constexpr const char* kNextPrompt = ". ";

constexpr const char* kHelp =
    "A line is run as it is typed; the last semicolon may be left out. An expression's value is shown. A block or\n"
    "bracket that is open goes on in the next line. Variables and functions stay.\n"
    "  help NAME    what a function does\n"
    "  exit         leaves, as the key for the end of the input does\n"
    "  Ctrl+C       drops what is typed, or stops what runs\n"
    "Functions:\n";

std::string Trimmed(const std::string& text) {
  constexpr const char* kSpace = " \t\r\n";
  const std::size_t begin = text.find_first_not_of(kSpace);
  return begin == std::string::npos ? std::string() : text.substr(begin, text.find_last_not_of(kSpace) - begin + 1);
}

// A line of a text, from 1.
std::string LineOf(const std::string& text, std::uint64_t number) {
  std::size_t begin = 0;
  for (; number > 1; --number)
    begin = text.find('\n', begin) + 1;
  return text.substr(begin, text.find('\n', begin) - begin);
}

// As scripts write it.
std::string TextLiteral(std::string_view text) {
  constexpr std::string_view kEscaped = "\"\\\n\r\t";
  constexpr std::string_view kLetters = "\"\\nrt";
  std::string literal(1, '"');
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    const std::size_t escape = kEscaped.find(c);
    if (escape != std::string_view::npos)
      literal.append(1, '\\').append(1, kLetters[escape]);
    else if (byte < ' ' || byte == 0x7F)
      literal += "\\(" + std::to_string(byte) + ")";
    else
      literal += c;
  }
  return literal + '"';
}

// Empty: there is none.
std::string ValueText(const CONXScriptVariable& value) {
  switch (value.GetType()) {
  case DataType::kNone:
    return {};
  case DataType::kString:
    return TextLiteral(value.GetText());
  default:
    return DecimalText(value.GetNumber(), value.GetType());
  }
}

// "NAME, line N: "
std::string Where(const PromptPlace& place, bool hasLines) {
  if (!place.function.empty())
    return place.function + ", line " + std::to_string(place.line) + ": ";
  return hasLines ? "line " + std::to_string(place.line) + ": " : std::string();
}

} // namespace

Prompt::Prompt(NativeProcessor& processor, const std::string& historyFile, std::function<std::string()> channelState)
    : m_processor(processor), m_editor(historyFile), m_program(processor.Session().Variables()),
      m_channelState(std::move(channelState)) {
  m_processor.ShowBeforeWaiting([this] { m_output.Show(); });
  m_processor.Session().SetFailureObserver(nullptr); // the prompt tells failures itself
}

bool Prompt::Run(const std::string& greeting) {
  if (m_editor.IsInteractive())
    Print(greeting);
  while (!m_isLeaving && !m_output.Failed()) {
    const host::Typed typed = ReadLine();
    if (typed.kind == host::TypedKind::kInterrupt) {
      m_input.clear();
      continue;
    }
    if (typed.kind != host::TypedKind::kLine) {
      if (!m_input.empty())
        ShowProblem();
      break;
    }
    m_input += (m_input.empty() ? "" : "\n") + typed.text;
    if (!Take())
      break;
  }
  m_editor.Rest();
  m_processor.ShowBeforeWaiting([] {});
  return m_output.Show();
}

host::Typed Prompt::ReadLine() {
  // The key is one of the editor's; Wine's console tells of it here too.
  const host::Interrupt interrupt([this](const host::InterruptCause& cause) {
    if (!cause.isKey)
      m_editor.Stop();
  });
  return m_editor.Read(m_input.empty() ? kFirstPrompt : kNextPrompt);
}

bool Prompt::Take() {
  m_editor.Rest();
  const std::string words = Trimmed(m_input);
  const std::size_t blank = words.find_first_of(" \t");
  if (TakeWord(words.substr(0, blank), blank == std::string::npos ? std::string() : Trimmed(words.substr(blank)))) {
    m_input.clear();
    return !m_isLeaving;
  }
  const PromptProgram::Kind kind = m_program.Read(m_input);
  switch (kind) {
  case PromptProgram::Kind::kUnfinished:
    return true;
  case PromptProgram::Kind::kWrong:
    ShowProblem();
    break;
  case PromptProgram::Kind::kFunctionName:
    ShowFunction(words);
    break;
  case PromptProgram::Kind::kStatements:
  case PromptProgram::Kind::kExpression:
    Execute(kind);
    break;
  }
  m_input.clear();
  return !m_isLeaving;
}

// What is no script: the prompt's own words.
bool Prompt::TakeWord(const std::string& word, const std::string& rest) {
  if (host::EqualIgnoringCase(word, "help")) {
    if (rest.empty())
      Print(kHelp + ListBuiltIns());
    else
      ShowFunction(rest);
    return true;
  }
  if (rest.empty() && (host::EqualIgnoringCase(word, "exit") || host::EqualIgnoringCase(word, "quit"))) {
    m_isLeaving = true;
    return true;
  }
  return false;
}

void Prompt::Execute(PromptProgram::Kind kind) {
  CONXScriptVariable value;
  SessionRun run{m_program.Text()};
  if (kind == PromptProgram::Kind::kExpression) {
    run.function = PromptProgram::kValueFunction;
    run.result = &value;
  }
  m_processor.Prepare();
  const host::Interrupt interrupt([this](const host::InterruptCause& cause) {
    m_isLeaving = m_isLeaving || !cause.isKey;
    m_processor.StopFor(cause);
  });
  const EONX_ERR_ERRCODE_ result = m_processor.Session().Execute(run, PrintOutput, this);
  if (!m_output.AtLineStart())
    m_output.Write("\n");
  if (CodeWithinClass(run.failure.error) != 0 || result != EONX_ERR_NONE)
    ShowFailure(run, result);
  else if (const std::string text = ValueText(value); !text.empty())
    m_output.Write(text + "\n");
  if (run.failure.error == kExitScript)
    m_isLeaving = true;
  if (const std::string state = m_channelState(); !state.empty())
    m_output.Write(state + "\n");
  m_output.Show();
}

void Prompt::PrintOutput(void* prompt, const char* text) {
  Prompt& self = *static_cast<Prompt*>(prompt);
  if (!self.m_output.Write(text))
    self.m_processor.Stop(); // nobody could see what runs
}

// --- what the user sees

void Prompt::ShowFailure(const SessionRun& run, EONX_ERR_ERRCODE_ result) {
  if (run.failure.error == kScriptOk) // it has not begun
    return Print(std::string(host::ResultText(result)) + "\n");
  if (run.failure.error == kProcessingAborted)
    return Print("stopped\n");
  const PromptPlace place = m_program.PlaceOf(run.failure.offset);
  Print(Where(place, m_input.find('\n') != std::string::npos) + ErrorText(run.failure.error) + "\n");
}

// The line, and a mark under the token.
void Prompt::ShowProblem() {
  const PromptPlace& place = m_program.ProblemPlace();
  if (!place.function.empty())
    return Print(Where(place, true) + m_program.Problem() + ", with what is typed now\n");
  const std::string line = LineOf(m_input, place.line);
  std::string mark = line.substr(0, place.column - 1);
  std::replace_if(
      mark.begin(), mark.end(), [](char c) { return c != '\t'; }, ' ');
  Print("  " + line + "\n  " + mark + "^ " + m_program.Problem() + "\n");
}

void Prompt::ShowFunction(const std::string& name) {
  const auto& functions = m_program.Functions();
  const auto isIt = [&](const PromptFunction& function) { return host::EqualIgnoringCase(function.name, name); };
  const auto found = std::find_if(functions.rbegin(), functions.rend(), isIt);
  const std::string help = found != functions.rend() ? found->text + "\n" : HelpForBuiltIn(name);
  Print(help.empty() ? "There is no function " + name + "; \"help\" lists them\n" : help);
}

void Prompt::Print(const std::string& lines) {
  m_output.Write(lines);
  m_output.Show();
}
