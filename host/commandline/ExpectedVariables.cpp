#include "host/commandline/ExpectedVariables.h"

#include "host/support/Files.h"
#include "host/support/Text.h"

#include <algorithm>

namespace host {
namespace {

constexpr std::string_view kBlanks = " \t\r";
constexpr std::string_view kKeyword = "expects:";
constexpr std::size_t kMostBytes = 65536; // nobody writes more in front of a script

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
  text.remove_prefix(begin);
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// What stands behind the keyword in a remark's line; nothing when the line is no such remark.
std::optional<std::string_view> Expected(std::string_view line) {
  line = Trimmed(line);
  if (!line.starts_with('#'))
    return std::nullopt;
  line = Trimmed(line.substr(1));
  if (!line.starts_with(kKeyword))
    return std::nullopt;
  return Trimmed(line.substr(kKeyword.size()));
}

tl::expected<Variable, std::string> ParseExpected(std::string_view text) {
  const std::size_t gap = std::min(text.find_first_of(kBlanks), text.size());
  const std::string_view type = Trimmed(text.substr(gap));
  if (type.empty())
    return tl::unexpected<std::string>("expected a name and a type, as in `# expects: limit int32`");
  return DeclareVariable(text.substr(0, gap), type);
}

} // namespace

ExpectedVariables ReadExpectedVariables(std::string_view text) {
  ExpectedVariables result;
  bool isInFront = true; // of the first statement
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of(std::string_view("\n\0", 2), begin), text.size());
    const std::string_view line = text.substr(begin, end - begin);
    const auto complain = [&](std::string reason) {
      const std::size_t first = begin + line.find('#');
      const std::size_t last = begin + line.find_last_not_of(kBlanks) + 1;
      result.malformed.push_back(
          {static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(last), std::move(reason)});
    };
    const auto expected = Expected(line);
    isInFront = isInFront && (Trimmed(line).empty() || Trimmed(line).starts_with('#'));
    if (expected && !isInFront)
      complain("this remark must stand in front of the first statement");
    else if (expected) {
      auto variable = ParseExpected(*expected);
      const auto isSame = [&](const Variable& other) { return EqualIgnoringCase(other.name, variable->name); };
      if (!variable)
        complain(variable.error());
      else if (std::ranges::any_of(result.variables, isSame))
        complain(Quoted(variable->name) + " is expected twice");
      else
        result.variables.push_back(std::move(*variable));
    }
    if (end < text.size() && text[end] == '\0')
      break;
    // Behind the first statement, lines matter only where they have the keyword.
    const std::size_t next = isInFront ? end : text.find(kKeyword, end);
    const std::size_t feed = next == std::string_view::npos ? next : isInFront ? next : text.rfind('\n', next);
    begin = feed == std::string_view::npos ? text.size() : feed + 1;
  }
  return result;
}

ExpectedVariables ReadExpectedVariablesOf(const std::string& script, const std::string& input) {
  return ReadExpectedVariables(script == "-" ? std::string_view(input).substr(0, kMostBytes)
                                             : std::string_view(ReadBeginning(script, kMostBytes)));
}

std::string MisfitOf(const ExpectedVariables& expected, const std::vector<Variable>& given) {
  std::string misfit;
  for (const Variable& variable : expected.variables) {
    const auto isSame = [&](const Variable& other) { return EqualIgnoringCase(other.name, variable.name); };
    const auto found = std::ranges::find_if(given, isSame);
    if (found != given.end() && found->type == variable.type)
      continue;
    const std::string type(NameOfType(variable.type));
    misfit += misfit.empty() ? "" : "; ";
    misfit += found == given.end()
                  ? "it expects a value: --set " + variable.name + ":" + type + "=..."
                  : "it expects " + variable.name + " as " + type + ", not " + std::string(NameOfType(found->type));
  }
  return misfit;
}

} // namespace host
