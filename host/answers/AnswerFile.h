// The file of `--answers`: what the user would answer, written down before the run. docs/answers.md has the format.
#pragma once

#include <tl/expected.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace host {

struct FileAnswer {
  enum class Kind { kText, kCancel, kDefault };

  unsigned line = 0; // from 1
  std::string caption;
  bool always = false; // for all further questions of this caption
  Kind kind = Kind::kText;
  bool quoted = false; // the text stood in quotation marks, which it does not have any more
  std::string text;
};

// The answers of a file's text in their order. Otherwise the first mistake as "LINE: TEXT".
tl::expected<std::vector<FileAnswer>, std::string> ParseAnswers(std::string_view text);

// A file's answers while they are used up: each caption has its own order.
class AnswerBook {
public:
  // Otherwise "PATH:LINE: TEXT", or that the file cannot be read.
  static tl::expected<AnswerBook, std::string> Read(const std::string& path);

  // The next answer to a question of this caption; null when there is none left. Stays the book's.
  const FileAnswer* Next(std::string_view caption);
  // How many answers this caption has.
  std::size_t CountOf(std::string_view caption) const;
  // "PATH:LINE" of an answer, and of the first one that nobody has asked for; empty when there is none.
  std::string PlaceOf(const FileAnswer& answer) const { return m_path + ":" + std::to_string(answer.line); }
  std::string FirstUnused() const;
  const std::string& Path() const { return m_path; }

private:
  struct Entry {
    FileAnswer answer;
    bool used = false;
  };
  std::string m_path;
  std::vector<Entry> m_entries;
};

} // namespace host
