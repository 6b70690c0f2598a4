// What a device says, as somebody sees it.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace host {

enum class ViewMode {
  kRaw,  // byte for byte
  kText, // UTF-8 without control characters: nothing in it takes a terminal over
  kHex,  // 16 bytes a line
};

// As text, CR, LF and the two together end a line; other control characters show as escapes of the script language,
// bytes that are no UTF-8 as the characters of Windows-1252.
class AnswerView {
public:
  // `lineStart`, if there is one, is called for what stands in front of each line.
  explicit AnswerView(ViewMode mode, std::function<std::string()> lineStart = {});

  // The text for these bytes, as far as it is known; the rest comes with what follows.
  std::string Feed(std::string_view bytes);
  // What was held back, as it is: of bytes shown in hexadecimal, the last line.
  std::string Pause();
  // The same, and the end of an unfinished line: something else comes next.
  std::string Break();

private:
  void FeedText(char byte);
  void FeedCharacter(char byte);
  void AddText(std::string_view text, std::size_t columns);
  void EndLine();
  // The bytes that were held back as part of a character are none.
  void GiveUpCharacter();

  const ViewMode m_mode;
  const std::function<std::string()> m_lineStart;
  std::string m_held;       // bytes of a line in hexadecimal, or of a character
  std::string m_text;       // that is known now
  std::size_t m_column = 0; // of the line
  bool m_isWithinLine = false;
  bool m_lastWasCr = false;
};

} // namespace host
