// Why a script failed, found again from the end of its output: the module's contract tells no more.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

class FailureTail {
public:
  // A run begins: of a script's text, or of a file.
  void Begin(std::string_view text, std::string file);
  // Variables that the next runs see.
  void SetNames(std::vector<std::string> names) { m_names = std::move(names); }
  // A piece of the output.
  void Add(std::string_view piece);

  // Lines, each with its end, in what was run or the innermost of the scripts that it ran; empty when the output did
  // not end with an error.
  std::string Explain() const;

private:
  std::string TextOf(const std::string& file) const;

  std::string m_input; // the script that is no file
  std::string m_file;  // empty: there is none
  std::vector<std::string> m_names;
  std::vector<std::string> m_pieces; // diagnostic lines and names of sub-scripts in turn, the innermost first
};

} // namespace host
