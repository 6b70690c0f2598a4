#include "filemanager/CopyTexts.h"

namespace {

constexpr const char* kCurrent = "Currently copying ";

} // namespace

std::string CopiedSoFarText(std::size_t done, std::size_t total) {
  return std::to_string(done) + " file" + (done == 1 ? "" : "s") + " of " + std::to_string(total) + " copied so far...";
}

std::string CurrentFileText(const std::string& path, const std::function<bool(const std::string&)>& fits) {
  std::string whole = kCurrent + path;
  if (path.empty() || fits(whole)) {
    return whole;
  }
  const auto withEnd = [&](std::size_t count) {
    return std::string(kCurrent) + "..." + path.substr(path.size() - count);
  };
  // The largest count that fits, found by halving: measuring text is what costs.
  std::size_t most = 0;
  std::size_t tooMany = path.size(); // the whole path is never shown behind dots
  while (tooMany - most > 1) {
    const std::size_t middle = most + (tooMany - most) / 2;
    (fits(withEnd(middle)) ? most : tooMany) = middle;
  }
  return withEnd(most);
}

std::string CopyErrorsText(const std::vector<TCOPYERROR>& errors, const std::vector<TFILEENTRY>& files,
                           const std::function<std::string(std::int32_t)>& channelText) {
  std::string text;
  for (const TCOPYERROR& error : errors) {
    text += text.empty() ? "" : "\n";
    text += "Error during copying " + files[error.index].path + ": " + channelText(error.code);
  }
  return text;
}
