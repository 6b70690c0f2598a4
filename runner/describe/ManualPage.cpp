#include "runner/describe/Descriptions.h"

#include <algorithm>
#include <cctype>

namespace {

// As the formatter takes it for plain text.
std::string Escaped(std::string_view text) {
  std::string escaped;
  bool atLineStart = true;
  for (const char c : text) {
    if (atLineStart && (c == '.' || c == '\''))
      escaped += "\\&";
    atLineStart = c == '\n';
    if (c == '\\')
      escaped += "\\e";
    else if (c == '-')
      escaped += "\\-";
    else
      escaped += c;
  }
  return escaped;
}

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Escaped(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Escaped(text) + "\\fR";
}

// "ondscript run [OPTION]... FILE..."
std::string Call(const std::string& program, const host::CommandRow& row) {
  std::string call = ".br\n" + Bold(row.name.empty() ? program : program + " " + std::string(row.name));
  if (!OptionsOf(row.command).empty())
    call += " [" + Italic("OPTION") + "]...";
  for (const host::OptionRow* file : FilesOf(row.command)) {
    const std::string name = Italic(file->name) + (file->IsRepeated() ? "..." : "");
    call += file->IsNeeded() ? " " + name : " [" + name + "]";
  }
  return call + "\n";
}

std::string Item(const host::OptionRow& row) {
  const std::string value = row.argument.empty() ? std::string() : " " + Italic(row.argument);
  const std::string name = row.IsOption() ? Bold(row.name) : Italic(row.name);
  return ".TP\n" + name + value + "\n" + Escaped(row.description) + "\n";
}

std::string Section(const std::string& program, const host::CommandRow& row) {
  std::string text = ".SS " + Escaped(program + " " + std::string(row.name)) + "\n" + Escaped(row.description) + ".\n";
  for (const host::OptionRow& option : host::Options()) {
    if (option.IsOf(row.command))
      text += Item(option);
  }
  if (!row.notes.empty())
    text += ".PP\n" + Escaped(row.notes) + "\n";
  return text;
}

} // namespace

std::string ManualPage(std::string_view programName) {
  const std::string program(programName);
  const host::CommandRow& own = ProgramRow(programName);
  std::string text = ".TH " + Upper(program) + " 1 \"\" \"" + program + " " OND_VERSION "\" \"User Commands\"\n";
  text += ".SH NAME\n" + program + " \\- " + Escaped(own.description.substr(0, own.description.find('.'))) + "\n";
  text += ".SH SYNOPSIS\n" + Bold(program) + " [" + Bold("--help") + " | " + Bold("--version") + "]\n";
  for (const host::CommandRow* row : NamedCommands(program))
    text += Call(program, *row);
  text += ".SH DESCRIPTION\n" + Escaped(own.notes) + "\nEvery command takes " + Bold("--help") + ".\n.SH COMMANDS\n";
  for (const host::CommandRow* row : NamedCommands(program))
    text += Section(program, *row);
  std::string examples;
  for (const host::CommandRow* row : NamedCommands(program))
    examples += row->examples;
  return text + ".SH EXAMPLES\n.nf\n" + Escaped(examples) + ".fi\n";
}
