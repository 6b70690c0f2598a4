#include "host/commandline/CommandLine.h"

#include "host/commandline/ExitCodes.h"
#include "host/commandline/StandardStreams.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>

namespace host {
namespace {

std::string Footer(const CommandRow& row) {
  std::string text = "Examples:\n" + std::string(row.examples);
  if (!row.notes.empty())
    text += "\n" + std::string(row.notes);
  return text;
}

// Lets the values go to `values` as they are typed: the library's own lists of texts would take several at once and
// give "[...]" and "{}" a meaning.
void AddValues(CLI::App& app, const OptionRow& row, CommandLine& line) {
  const auto take = [&line, &row](const CLI::results_t& results) {
    line.values[row.name] = results;
    return true;
  };
  CLI::Option* const option = app.add_option(row.name, take, row.description)->type_name(row.argument);
  if (row.IsOption())
    option->expected(1)->allow_extra_args(false)->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
  else
    option->expected(1, row.IsRepeated() ? CLI::detail::expected_max_vector_size : 1)
        ->allow_extra_args(row.IsRepeated());
  option->required(row.IsNeeded());
}

void AddOption(CLI::App& app, const OptionRow& row, CommandLine& line) {
  if (!row.argument.empty() || !row.IsOption())
    AddValues(app, row, line);
  else
    app.add_flag_callback(
        row.name, [&line, &row] { line.values[row.name] = {""}; }, row.description);
}

// `app` is the program or one of its commands. The rows and `line` must outlive the parsing.
void Describe(CLI::App& app, const CommandRow& row, CommandLine& line) {
  app.set_help_flag("-h,--help", "print this and exit");
  app.footer(Footer(row));
  // A script at "/bench/a.dcs" is a path under Windows too (Wine, and every program that takes forward slashes).
  app.allow_windows_style_options(false);
  for (const OptionRow& option : Options()) {
    if (option.IsOf(row.command))
      AddOption(app, option, line);
  }
}

// The command of a row, in its group if it has one.
CLI::App* AddCommand(CLI::App& app, const CommandRow& row) {
  const std::string name(row.name);
  const std::size_t blank = name.find(' ');
  if (blank == std::string::npos)
    return app.add_subcommand(name, std::string(row.description));
  const std::string group = name.substr(0, blank);
  const auto groups = app.get_subcommands([&](const CLI::App* command) { return command->get_name() == group; });
  CLI::App* parent = groups.empty() ? nullptr : groups.front();
  if (!parent) {
    parent = app.add_subcommand(group, "Shows and converts " + group + "s")->require_subcommand(1);
    parent->set_help_flag("-h,--help", "print this and exit");
    parent->footer("");
  }
  return parent->add_subcommand(name.substr(blank + 1), std::string(row.description));
}

std::string_view FirstWord(const CommandRow& row) {
  return row.name.substr(0, row.name.find(' '));
}

bool IsCommand(std::string_view program, std::string_view word) {
  return std::any_of(Commands().begin(), Commands().end(), [&](const CommandRow& row) {
    return row.program == program && !row.name.empty() && FirstWord(row) == word;
  });
}

// What a program that does nothing by itself must be told first; anything else is a script, or an option in front of
// one.
bool IsFirst(std::string_view program, std::string_view word) {
  return word == "-h" || word == "--help" || word == "--version" || IsCommand(program, word);
}

// From the last word to the first, as the library wants them. `isImplied` tells that the command is none of the words
// typed.
std::vector<std::string> Words(const CommandRow& program, int argc, const char* const* argv, bool& isImplied) {
  std::vector<std::string> words(argv + 1, argv + argc);
  isImplied = program.command == Command::kHelp && !words.empty() && !IsFirst(program.program, words.front());
  if (isImplied)
    words.insert(words.begin(), "run");
  std::reverse(words.begin(), words.end());
  return words;
}

// Whether the library has to know a command. When a command comes first, others only where their names stand: to
// describe all of them took longer than an empty script.
bool IsWanted(const CommandRow& row, const std::vector<std::string>& words) {
  return words.empty() || row.name.empty() || !IsCommand(row.program, words.back()) ||
         std::find(words.begin(), words.end(), FirstWord(row)) != words.end();
}

int UsageError(std::string_view program, const std::string& error) {
  PrintMessage(program, error + "; --help tells more");
  return kExitUsage;
}

// Help and version are results like any other.
int Print(std::string_view program, const std::string& text) {
  StandardOutput output;
  output.Write(text);
  return ExitCodeOf(program, output);
}

bool HasOptions(const CLI::App& app) {
  const auto options = app.get_options();
  return std::any_of(options.begin(), options.end(), [](const CLI::Option* option) { return option->count() != 0; });
}

// What the library lets pass. Empty: nothing is wrong.
std::string Mistake(const CLI::App& app, const CommandLine& line) {
  if (!app.get_subcommands().empty() && HasOptions(app))
    return "options stand behind the command";
  for (const OptionRow& row : Options()) {
    if (row.IsOption() && !row.IsRepeated() && line.All(row.name).size() > 1)
      return row.name + " is given more than once";
  }
  return {};
}

// An option that does not exist comes first: its value was taken for a file, or what is said to be missing is missing
// because of it.
std::string Complaint(const CLI::App& app, const CLI::ParseError& error) {
  for (const std::string& word : app.remaining(true)) {
    if (word.size() > 1 && word.front() == '-')
      return "there is no option " + word;
  }
  return error.what();
}

// Otherwise the process's exit code.
tl::expected<void, int> Parse(CLI::App& app, std::vector<std::string> words, const CommandLine& line) {
  try {
    app.parse(std::move(words));
  } catch (const CLI::CallForVersion& version) {
    return tl::unexpected(Print(app.get_name(), std::string(version.what()) + "\n"));
  } catch (const CLI::CallForHelp&) {
    return tl::unexpected(Print(app.get_name(), app.help()));
  } catch (const CLI::ParseError& error) {
    return tl::unexpected(UsageError(app.get_name(), Complaint(app, error)));
  }
  if (const std::string mistake = Mistake(app, line); !mistake.empty())
    return tl::unexpected(UsageError(app.get_name(), mistake));
  return {};
}

} // namespace

const std::vector<std::string>& CommandLine::All(std::string_view name) const {
  static const std::vector<std::string> none;
  const auto found = values.find(name);
  return found != values.end() ? found->second : none;
}

std::string CommandLine::Value(std::string_view name, std::string_view otherwise) const {
  const std::vector<std::string>& all = All(name);
  return all.empty() ? std::string(otherwise) : all.front();
}

tl::expected<CommandLine, int> ParseCommandLine(std::string_view program, int argc, const char* const* argv) {
  const auto isAlone = [&](const CommandRow& row) { return row.program == program && row.name.empty(); };
  const CommandRow& alone = *std::find_if(Commands().begin(), Commands().end(), isAlone);
  CLI::App app(std::string(alone.description), std::string(program));
  CommandLine line{};
  line.command = alone.command;
  std::vector<std::string> words = Words(alone, argc, argv, line.isImplied);
  for (const CommandRow& row : Commands()) {
    if (row.program != program || !IsWanted(row, words))
      continue;
    CLI::App* described = &app;
    if (!row.name.empty()) {
      described = AddCommand(app, row);
      described->parse_complete_callback([&line, &row] { line.command = row.command; });
    }
    Describe(*described, row, line);
  }
  app.set_version_flag("--version", std::string(program) + " " OND_VERSION, "print the version and exit");
  if (const auto parsed = Parse(app, std::move(words), line); !parsed)
    return tl::unexpected(parsed.error());
  return line;
}

} // namespace host
