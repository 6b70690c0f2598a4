// Options that may be given several times.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

// An option that takes one value and may be given again; the values go to `values` as they are typed. `form` shows how
// one looks.
void AddRepeatedOption(CLI::App& command, const std::string& name, std::vector<std::string>& values,
                       const std::string& form, const std::string& description);

} // namespace host
