// The first byte is the terminator, the rest the text.
#include "fuzz/Expect.h"
#include "util/EscapedString.h"

#include <string_view>
#include <vector>

namespace {

void ReadText(char terminator, std::string_view text) {
  // Of exactly the size that may be read, so that the sanitizer sees a byte too many.
  std::vector<char> bytes(text.begin(), text.end());
  bytes.push_back('\0');
  bytes.shrink_to_fit();

  std::size_t endPos = 0;
  std::string error;
  int ok = -1;
  const std::string result = ParseString(bytes.data(), text.size(), terminator, &endPos, &error, &ok);
  Expect(ok == (error.empty() ? 1 : 0), "a message exactly when it failed");
  Expect(ok == 1 || result.empty(), "no bytes when it failed");
  Expect(endPos <= text.size() + 1, "at most the closing zero byte is read too");
  Expect(result.size() <= endPos, "no byte from nowhere");
}

void RestoreText(std::string_view text) {
  std::string escaped;
  for (const char c : text)
    escaped += "\\(" + std::to_string(static_cast<unsigned char>(c)) + ")";
  escaped += '"';
  Expect(ParseString(escaped.c_str(), escaped.size(), '"', nullptr, nullptr, nullptr) == text,
         "escaped bytes come back");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size) {
  if (size > 0) {
    ReadText(data[0], {data + 1, size - 1});
    RestoreText({data, size});
  }
  return 0;
}
