#include "host/answers/AnswerFile.h"

#include "host/support/Files.h"
#include "host/support/Text.h"

#include <algorithm>
#include <optional>

namespace host {
namespace {

constexpr std::uint64_t kLongestFile = 16 << 20;
constexpr std::string_view kAlways = "(always)";

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// The text between the quotation marks that it begins and ends with.
std::optional<std::string_view> Unquoted(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"')
    return std::nullopt;
  return text.substr(1, text.size() - 2);
}

// Where the caption ends: the first "=", or the first one behind a caption in quotation marks.
std::size_t FindEquals(std::string_view line) {
  const std::size_t begin = line.starts_with('"') ? line.find('"', 1) : 0;
  return begin == std::string_view::npos ? begin : line.find('=', begin);
}

// False when nothing is left of it.
bool ReadCaption(std::string_view text, FileAnswer& answer) {
  if (text.ends_with(kAlways)) {
    answer.always = true;
    text = Trimmed(text.substr(0, text.size() - kAlways.size()));
  }
  answer.caption = Unquoted(text).value_or(text);
  return !text.empty();
}

// What is wrong; empty: nothing.
std::string ReadAnswer(std::string_view text, FileAnswer& answer) {
  if (text.empty())
    return "the answer is missing: \"\" is the empty text, <default> takes what is offered";
  if (text.front() == '<' && text.back() == '>') {
    const bool isCancel = EqualIgnoringCase(text, "<cancel>");
    if (!isCancel && !EqualIgnoringCase(text, "<default>"))
      return "there is no " + std::string(text) +
             ", only <cancel> and <default>; as a text it stands in quotation marks";
    answer.kind = isCancel ? FileAnswer::Kind::kCancel : FileAnswer::Kind::kDefault;
  } else if (text.front() == '"') {
    const auto inner = Unquoted(text);
    if (!inner)
      return "the closing quotation mark is missing";
    answer.text = *inner;
    answer.quoted = true;
  } else {
    answer.text = text;
  }
  return {};
}

// What is wrong with the line; empty: nothing.
std::string ReadLine(std::string_view line, FileAnswer& answer) {
  const std::size_t equals = FindEquals(line);
  if (equals == std::string_view::npos || !ReadCaption(Trimmed(line.substr(0, equals)), answer))
    return "expected CAPTION = ANSWER";
  return ReadAnswer(Trimmed(line.substr(equals + 1)), answer);
}

// An answer in front of this one that leaves it nothing to answer.
const FileAnswer* FindEarlierAlways(const std::vector<FileAnswer>& answers, const FileAnswer& answer) {
  const auto found = std::find_if(answers.begin(), answers.end(), [&](const FileAnswer& earlier) {
    return earlier.always && earlier.caption == answer.caption;
  });
  return found != answers.end() ? &*found : nullptr;
}

} // namespace

tl::expected<std::vector<FileAnswer>, std::string> ParseAnswers(std::string_view text) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark))
    text.remove_prefix(kByteOrderMark.size());
  std::vector<FileAnswer> answers;
  for (unsigned number = 1; !text.empty(); ++number) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const auto wrong = [number](const std::string& what) {
      return tl::unexpected(std::to_string(number) + ": " + what);
    };
    if (line.find('\0') != std::string_view::npos)
      return wrong("this is no plain text (is it saved as \"Unicode\"?)");
    if (line.empty() || line.front() == '#')
      continue;
    FileAnswer answer;
    answer.line = number;
    if (const std::string mistake = ReadLine(line, answer); !mistake.empty())
      return wrong(mistake);
    if (const FileAnswer* earlier = FindEarlierAlways(answers, answer))
      return wrong("line " + std::to_string(earlier->line) + " answers every further question of this caption already");
    answers.push_back(std::move(answer));
  }
  return answers;
}

tl::expected<AnswerBook, std::string> AnswerBook::Read(const std::string& path) {
  const ReadResult text = ReadWholeFile(path, kLongestFile);
  if (!text)
    return tl::unexpected(
        path + (text.error() == ReadFailure::kTooLarge ? ": the file is too long" : ": the file cannot be read"));
  auto answers = ParseAnswers(*text);
  if (!answers)
    return tl::unexpected(path + ":" + answers.error());
  AnswerBook book;
  book.m_path = path;
  for (FileAnswer& answer : *answers)
    book.m_entries.push_back({std::move(answer)});
  return book;
}

const FileAnswer* AnswerBook::Next(std::string_view caption) {
  for (Entry& entry : m_entries) {
    if (entry.answer.caption == caption && (!entry.used || entry.answer.always)) {
      entry.used = true;
      return &entry.answer;
    }
  }
  return nullptr;
}

std::size_t AnswerBook::CountOf(std::string_view caption) const {
  return static_cast<std::size_t>(std::count_if(m_entries.begin(), m_entries.end(),
                                                [&](const Entry& entry) { return entry.answer.caption == caption; }));
}

std::string AnswerBook::FirstUnused() const {
  const auto unused = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return !entry.used; });
  return unused != m_entries.end() ? PlaceOf(unused->answer) : std::string();
}

} // namespace host
