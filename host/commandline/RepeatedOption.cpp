#include "host/commandline/RepeatedOption.h"

#include <CLI/CLI.hpp>

namespace host {

void AddRepeatedOption(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                       const std::string& form, const std::string& description) {
  // The library's own lists of texts would take several values at once and give "[...]" and "{}" a meaning.
  command
      .add_option(
          name,
          [&values](const CLI::results_t& results) {
            values = results;
            return true;
          },
          description)
      ->type_name(form)
      ->expected(1)
      ->allow_extra_args(false)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

} // namespace host
