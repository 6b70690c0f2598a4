#include "host/channel/replay/Tape.h"

#include "host/channel/Channel.h"

#include <algorithm>

namespace host {
namespace {

bool IsPlayed(ChannelOperation operation) {
  return operation != ChannelOperation::kGetInfoString && operation != ChannelOperation::kLock &&
         operation != ChannelOperation::kUnlock && operation != ChannelOperation::kGetState;
}

std::string_view NameOf(std::string_view path) {
  return path.substr(path.find_last_of("\\/") + 1);
}

// A memory block's bytes are on the tape themselves. A file's contents may be missing there.
bool HaveTheSameContents(const TraceCall& tape, const TraceCall& run) {
  return tape.Shape().sends || !tape.contents || tape.contents == run.contents;
}

} // namespace

bool AskTheSame(const TraceCall& tape, const TraceCall& run) {
  const TraceShape& shape = tape.Shape();
  return tape.operation == run.operation &&
         std::equal(tape.numbers.begin(), tape.numbers.begin() + static_cast<std::ptrdiff_t>(shape.given),
                    run.numbers.begin()) &&
         NameOf(tape.text) == NameOf(run.text) && (!shape.sends || tape.bytes == run.bytes) &&
         HaveTheSameContents(tape, run);
}

bool FindsNothing(const TraceCall& call) {
  return call.operation == ChannelOperation::kReceive && call.result == 0 && call.bytes.empty();
}

Tape::Tape(Trace trace) : m_trace(std::move(trace)) {
  for (std::size_t i = 0; i < m_trace.entries.size(); ++i) {
    const TraceEntry& entry = m_trace.entries[i];
    if (const auto* const call = std::get_if<TraceCall>(&entry.record); call && IsPlayed(call->operation))
      m_steps.push_back({i + 1, entry.line, call});
    else if (!call && std::get<TraceEvent>(entry.record).name == kTraceChannelEnded)
      m_steps.push_back({i + 1, entry.line, nullptr});
  }
}

bool Tape::IsBehindSilence() const {
  return m_next > 0 && m_steps[m_next - 1].call && FindsNothing(*m_steps[m_next - 1].call);
}

void Tape::SkipSilence() {
  if (!IsBehindSilence())
    return;
  while (Next() && Next()->call && FindsNothing(*Next()->call))
    Advance();
}

void Tape::SkipToReply() {
  while (Next() && (!Next()->call || FindsNothing(*Next()->call)))
    Advance();
}

bool Tape::Seek(const TraceCall& asked) {
  const auto fits = [&](const Step& step) { return step.call && AskTheSame(*step.call, asked); };
  const auto next = m_steps.begin() + static_cast<std::ptrdiff_t>(std::min(m_next, m_steps.size()));
  auto found = std::find_if(next, m_steps.end(), fits);
  if (found == m_steps.end()) {
    found = std::find_if(m_steps.begin(), next, fits);
    if (found == next)
      return false;
  }
  m_next = static_cast<std::size_t>(found - m_steps.begin());
  return true;
}

std::string Tape::RecordedErrorText(std::int64_t code) const {
  const std::size_t played = m_next > 0 ? m_steps[m_next - 1].line : 0;
  std::string text;
  for (const TraceEntry& entry : m_trace.entries) {
    const auto* const call = std::get_if<TraceCall>(&entry.record);
    if (!call || call->operation != ChannelOperation::kGetInfoString || call->numbers[0] != OND_INFO_ERROR ||
        call->numbers[1] != code)
      continue;
    text = call->text;
    if (entry.line > played)
      break;
  }
  return text;
}

const TraceEvent* Tape::Find(std::string_view name) const {
  for (const TraceEntry& entry : m_trace.entries) {
    if (const auto* const event = std::get_if<TraceEvent>(&entry.record); event && event->name == name)
      return event;
  }
  return nullptr;
}

} // namespace host
