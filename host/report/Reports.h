// The reports of a run and the formats that there are; one file holds one format.
#pragma once

#include "host/report/RunRecord.h"

#include <tl/expected.hpp>

#include <string>

namespace host {

struct ReportFormat {
  const char* name;
  std::string (*make)(const SessionRecord&); // the whole report in UTF-8; null: it grows while the run goes on
};

struct ReportRequest {
  const ReportFormat* format = nullptr;
  std::string path;
};

// "junit, jsonl, tap, html"
std::string ReportFormatNames();
// Reads "FORMAT=FILE". Otherwise says what is wrong.
tl::expected<ReportRequest, std::string> ParseReport(const std::string& text);

// The formats that are made at the end.
std::string MakeJUnitReport(const SessionRecord& session);
std::string MakeTapReport(const SessionRecord& session);
std::string MakeHtmlReport(const SessionRecord& session);

// What `--get-file` holds.
std::string MakeValuesFile(const SessionRecord& session);

} // namespace host
