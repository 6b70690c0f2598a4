#include "host/channel/sim/description/Braces.h"

namespace host {

bool IsName(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!IsNameByte(text[i], i == 0))
      return false;
  }
  return !text.empty();
}

std::vector<BracedPart> SplitAtBraces(const QuotedText& text, StatementReader& reader) {
  std::vector<BracedPart> parts;
  bool inside = false;
  for (const QuotedText::Byte& byte : text.bytes) {
    const auto is = [&](char brace) { return !byte.isEscape && byte.value == brace; };
    if (inside && is('}')) {
      inside = false;
    } else if (!inside && is('{')) {
      inside = true;
      parts.push_back({true, {}, byte.column});
    } else {
      if (!inside && (parts.empty() || parts.back().isBraced))
        parts.push_back({false, {}, byte.column});
      parts.back().text += byte.value;
    }
  }
  if (inside)
    reader.Fail(parts.back().column, "expected } behind this brace; a brace alone is \\(x7B)");
  return parts;
}

} // namespace host
