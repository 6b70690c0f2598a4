#include "host/trace/TraceFilter.h"

#include "host/support/Text.h"

namespace host {
namespace {

bool IsNamed(const TraceShape& shape, std::string_view name) {
  const bool sends = shape.sends || shape.operation == ChannelOperation::kTransmitFile;
  return (EqualIgnoringCase(name, "sent") && sends) || (EqualIgnoringCase(name, "received") && shape.receives) ||
         EqualIgnoringCase(name, kChannelOperations[IndexOf(shape.operation)].name);
}

} // namespace

bool TraceFilter::Add(std::string_view name) {
  bool known = EqualIgnoringCase(name, "events");
  m_events = m_events || known;
  for (const TraceShape& shape : kTraceShapes) {
    if (!IsNamed(shape, name))
      continue;
    m_operations.set(IndexOf(shape.operation));
    known = true;
  }
  m_isSet = m_isSet || known;
  return known;
}

bool TraceFilter::Fits(const TraceRecord& record) const {
  if (!m_isSet)
    return true;
  const auto* const call = std::get_if<TraceCall>(&record);
  return call ? m_operations.test(IndexOf(call->operation)) : m_events;
}

std::string TraceFilter::Names() {
  std::string names = "sent, received, events";
  for (const ChannelOperationTraits& known : kChannelOperations)
    names.append(", ").append(known.name);
  return names;
}

} // namespace host
