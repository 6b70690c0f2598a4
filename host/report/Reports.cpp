#include "host/report/Reports.h"

#include "host/support/Text.h"

namespace host {
namespace {

constexpr ReportFormat kFormats[] = {
    {"junit", MakeJUnitReport},
    {"jsonl", nullptr},
    {"tap", MakeTapReport},
    {"html", MakeHtmlReport},
};

} // namespace

std::string ReportFormatNames() {
  std::string names;
  for (const ReportFormat& format : kFormats)
    names.append(names.empty() ? "" : ", ").append(format.name);
  return names;
}

tl::expected<ReportRequest, std::string> ParseReport(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals + 1 == text.size())
    return tl::unexpected<std::string>("expected FORMAT=FILE, as in html=report.html");
  const std::string name = text.substr(0, equals);
  for (const ReportFormat& format : kFormats) {
    if (name == format.name)
      return ReportRequest{&format, text.substr(equals + 1)};
  }
  return tl::unexpected("unknown format " + Quoted(name) + "; there are " + ReportFormatNames());
}

} // namespace host
