#include "host/windows/TraceRows.h"

#include "host/support/Text.h"
#include "host/trace/TraceText.h"

#include <windows.h>

#include <commctrl.h>

#include <cstdio>
#include <iterator>

namespace host {
namespace {

constexpr RowColumn kColumns[] = {{"Time", 48, LVCFMT_RIGHT},
                                  {"Owner", 62, LVCFMT_LEFT},
                                  {"Call", 100, LVCFMT_LEFT},
                                  {"Bytes", 172, LVCFMT_LEFT},
                                  {"\xB5s", 30, LVCFMT_RIGHT}};

// In front of the operations, which are filters too: what a user reads, and names of `TraceFilter`.
constexpr struct {
  const char* text;
  std::string_view first;
  std::string_view second;
} kFilters[] = {{"everything", "", ""},
                {"sent and received", "sent", "received"},
                {"sent", "sent", ""},
                {"received", "received", ""},
                {"events", "events", ""}};

std::string TimeText(std::uint64_t time) {
  char text[40];
  std::snprintf(text, sizeof text, "%llu.%06llu", static_cast<unsigned long long>(time / 1000000),
                static_cast<unsigned long long>(time % 1000000));
  return text;
}

std::string OwnerText(const TraceCall& call, const TraceLog::Row& row) {
  if (row.owner)
    return *row.owner;
  return call.owner != 0 ? std::to_string(call.owner) : std::string();
}

std::string CallText(const TraceCall& call, const TraceLog::Row& row) {
  std::string text = RecordText(call);
  if (call.operation == ChannelOperation::kReceive && call.result == 0 && row.size == 0)
    text += ", nothing";
  if (row.repeated > 1)
    text += " (" + std::to_string(row.repeated) + " times)";
  return text;
}

// "3: id." and what does not fit told.
std::string BytesText(const TraceCall& call, std::uint64_t size) {
  if (size == 0)
    return {};
  std::string text = std::to_string(size) + ": ";
  for (const char c : call.bytes)
    text += c < ' ' || c > '~' ? '.' : c;
  return size > call.bytes.size() ? text + " ..." : text;
}

} // namespace

std::span<const RowColumn> TraceRows::Columns() const {
  return kColumns;
}

std::vector<std::string> TraceRows::Filters() const {
  std::vector<std::string> filters;
  for (const auto& filter : kFilters)
    filters.emplace_back(filter.text);
  for (const ChannelOperationTraits& operation : kChannelOperations)
    filters.emplace_back(operation.name);
  return filters;
}

void TraceRows::SetFilter(std::size_t filter) {
  m_filter = {};
  if (filter >= std::size(kFilters)) {
    m_filter.Add(kChannelOperations[filter - std::size(kFilters)].name);
    return;
  }
  m_filter.Add(kFilters[filter].first);
  m_filter.Add(kFilters[filter].second);
}

std::vector<std::string> TraceRows::TextsOf(const TraceLog::Row& row) const {
  if (const auto* const call = std::get_if<TraceCall>(&row.record))
    return {TimeText(call->start), OwnerText(*call, row), CallText(*call, row), BytesText(*call, row.size),
            std::to_string(call->duration)};
  const TraceEvent& event = std::get<TraceEvent>(row.record);
  if (event.name.empty())
    return std::vector<std::string>(std::size(kColumns)); // a row that has gone meanwhile
  std::string fields;
  for (const auto& [name, value] : event.fields)
    fields.append(fields.empty() ? "" : " ").append(name).append(" ").append(Quoted(value));
  return {TimeText(event.start), "", "* " + event.name, fields, ""};
}

} // namespace host
