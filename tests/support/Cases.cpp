#include "tests/support/Cases.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <sstream>

namespace {

// Without the blanks around it, codes decoded.
std::string WordOf(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  std::string word;
  for (; !text.empty(); text.remove_prefix(1)) {
    const bool isCode = text.size() > 3 && text[0] == '<' && text[3] == '>' && std::isxdigit(text[1]) != 0 &&
                        std::isxdigit(text[2]) != 0;
    word += isCode ? static_cast<char>(std::stoi(std::string(text.substr(1, 2)), nullptr, 16)) : text[0];
    text.remove_prefix(isCode ? 3 : 0);
  }
  return word;
}

std::string LineOf(const Words& words) {
  std::string line;
  for (const std::string& word : words)
    line += word + " | ";
  return line;
}

} // namespace

Words WordsOf(std::string_view text) {
  Words words;
  for (std::size_t end = 0; end != std::string_view::npos; text.remove_prefix(std::min(end + 1, text.size()))) {
    end = text.find('|');
    words.push_back(WordOf(text.substr(0, end)));
  }
  return words;
}

std::string ReadTestFile(const std::string& file) {
  std::ifstream stream(std::string(OND_TESTS_FOLDER "/") + file, std::ios::binary);
  REQUIRE_MESSAGE(stream.is_open(), "cannot read tests/", file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void CheckCases(const std::string& file, const std::string& section, const std::function<Words(const Words&)>& answer) {
  std::istringstream lines(ReadTestFile(file));
  std::size_t count = 0;
  bool isWanted = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('['))
      isWanted = line == "[" + section + "]";
    const std::size_t arrow = line.find("=>");
    if (!isWanted || line.starts_with('#') || arrow == std::string::npos)
      continue;
    CAPTURE(line);
    CHECK(LineOf(answer(WordsOf(line.substr(0, arrow)))) == LineOf(WordsOf(line.substr(arrow + 2))));
    ++count;
  }
  CHECK_MESSAGE(count != 0, "tests/", file, " has no cases of ", section);
}
