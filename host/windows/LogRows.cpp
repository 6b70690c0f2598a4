#include "host/windows/LogRows.h"

#include <windows.h>

#include <commctrl.h>

namespace host {
namespace {

constexpr RowColumn kColumns[] = {{"Time", 88, LVCFMT_LEFT}, {"About", 40, LVCFMT_LEFT}, {"What", 284, LVCFMT_LEFT}};

} // namespace

std::span<const RowColumn> LogRows::Columns() const {
  return kColumns;
}

std::vector<std::string> LogRows::Filters() const {
  std::vector<std::string> filters = {"everything"};
  for (const LogTopicName& topic : kLogTopics)
    filters.emplace_back(topic.name);
  return filters;
}

void LogRows::SetFilter(std::size_t filter) {
  m_topic = filter == 0 ? std::nullopt : std::optional(kLogTopics[filter - 1].topic);
}

std::vector<std::string> LogRows::TextsOf(const SessionLog::Line& line) const {
  return {line.TimeText(), std::string(line.TopicName()), line.text};
}

} // namespace host
