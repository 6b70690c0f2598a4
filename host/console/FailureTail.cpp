#include "host/console/FailureTail.h"

#include "host/commandline/Diagnostic.h"
#include "host/commandline/StandardStreams.h"
#include "host/support/Files.h"
#include "scriptrt/check/DiagnosticReading.h"
#include "util/ScriptPath.h"

namespace host {
namespace {

constexpr std::string_view kSubScript = "in subscript \"";
constexpr std::string_view kSubScriptEnd = "\"\n";

std::string FolderOf(const std::string& file) {
  const std::size_t name = file.find_last_of("\\/:");
  return name == std::string::npos ? "." : file.substr(0, name);
}

std::string Shown(const std::string& file) {
  const std::string shown = file.empty() ? "<stdin>" : ShownPath(file);
  return shown.starts_with(".\\") ? shown.substr(2) : shown;
}

} // namespace

void FailureTail::Begin(std::string_view text, std::string file) {
  m_input = text;
  m_file = std::move(file);
  m_pieces.clear();
}

void FailureTail::Add(std::string_view piece) {
  constexpr std::size_t kMost = 100;
  const bool isName = piece.starts_with(kSubScript) && piece.ends_with(kSubScriptEnd);
  const bool isDiagnostic = !isName && ParseDiagnostic(piece).has_value();
  const bool goesOn = m_pieces.size() % 2 == 0 ? isDiagnostic : isName;
  if (!goesOn || m_pieces.size() == kMost)
    m_pieces.clear();
  if (goesOn || isDiagnostic)
    m_pieces.emplace_back(piece);
}

std::string FailureTail::TextOf(const std::string& file) const {
  return file.empty() ? m_input : ReadWholeFile(file, kLongestScript).value_or("");
}

std::string FailureTail::Explain() const {
  if (m_pieces.size() % 2 == 0)
    return {};
  std::string file = m_file;
  std::string calls;
  for (std::size_t i = m_pieces.size() - 1; i > 0; i -= 2) { // from the outermost script inwards
    const auto call = ParseDiagnostic(m_pieces[i]);
    calls.insert(0, "      called in " + PlaceText(Shown(file), TextOf(file), call->place) + "\n");
    const std::string& piece = m_pieces[i - 1];
    const std::string name = piece.substr(kSubScript.size(), piece.size() - kSubScript.size() - kSubScriptEnd.size());
    file = ResolveScriptPath(FolderOf(file), name);
  }
  const std::string text = TextOf(file);
  const std::string shown = Shown(file);
  std::string lines;
  for (const ScriptProblem& problem : ExplainDiagnostic(*ParseDiagnostic(m_pieces.front()), text,
                                                        m_pieces.size() == 1 ? m_names : std::vector<std::string>()))
    lines += DiagnosticText(DiagnosticOf(shown, problem), text, Colours::kNone);
  return lines + calls;
}

} // namespace host
