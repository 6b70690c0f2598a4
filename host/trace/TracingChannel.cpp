#include "host/trace/TracingChannel.h"

#include "host/channel/ChannelErrors.h"
#include "host/trace/CallRecord.h"

#include <algorithm>
#include <new>

namespace host {
namespace {

// Notes a transfer's reports on their way to whom they are for.
struct ProgressNotes {
  TransferProgressCallback callback;
  void* context;
  std::vector<std::uint32_t>& steps;

  static std::int32_t Take(void* context, std::uint32_t stepsDone) {
    const auto& notes = *static_cast<ProgressNotes*>(context);
    try {
      notes.steps.push_back(stepsDone);
    } catch (const std::bad_alloc&) {
      // The transfer matters more.
    }
    return notes.callback(notes.context, stepsDone);
  }
};

// Before the call: a local file may be another one afterwards.
bool TakeGivenBy(const ChannelCall& call, TraceCall& record) noexcept {
  try {
    TakeGiven(call, record);
    return true;
  } catch (const std::bad_alloc&) {
    return false; // the call matters more than its record
  }
}

void WriteLineEvent(TraceFork& sinks, LineEvent event, const std::string& reason) noexcept {
  try {
    if (event == LineEvent::kLost)
      sinks.Write(TraceEvent{std::string(kTraceLineLost), sinks.Clock().Now(), {{"reason", reason}}});
    else
      sinks.Write(TraceEvent{std::string(kTraceLineOpenAgain), sinks.Clock().Now(), {}});
  } catch (const std::bad_alloc&) {
    // The line matters more.
  }
}

} // namespace

TracingChannel::TracingChannel(std::unique_ptr<Channel> inner, TraceFork& sinks, TraceLooks looks, NameOfOwner nameOf)
    : ForwardingChannel(std::move(inner)), m_sinks(sinks), m_looks(looks), m_nameOf(std::move(nameOf)) {
  WatchLine([&sinks](LineEvent event, const std::string& reason) { WriteLineEvent(sinks, event, reason); });
}

void TracingChannel::Around(ChannelCall& call) {
  TraceCall record;
  record.operation = call.operation;
  const bool isNoted = TakeGivenBy(call, record);
  ProgressNotes notes{call.arguments.callback, call.arguments.context, record.progress};
  if (notes.callback) {
    call.arguments.callback = ProgressNotes::Take;
    call.arguments.context = &notes;
  }
  record.start = m_sinks.Clock().Now();
  call.Forward();
  record.duration = m_sinks.Clock().Now() - record.start;
  if (isNoted)
    Trace(call, record);
}

void TracingChannel::Trace(const ChannelCall& call, TraceCall& record) noexcept {
  try {
    TakeAnswer(call, record);
    record.owner = OwnerOf(call);
    const bool isLook =
        call.operation == ChannelOperation::kGetState || call.operation == ChannelOperation::kGetInfoString;
    if (isLook && record.owner == 0 && m_looks == TraceLooks::kLeftOut)
      return;
    m_sinks.Write(record);
  } catch (const std::bad_alloc&) {
    // The call matters more than its record.
  }
}

std::uint64_t TracingChannel::OwnerOf(const ChannelCall& call) {
  const std::lock_guard guard(m_mutex);
  if (!call.arguments.owner)
    return m_holder;
  auto known = std::find(m_owners.begin(), m_owners.end(), call.arguments.owner);
  if (known == m_owners.end()) {
    known = m_owners.insert(known, call.arguments.owner);
    WriteName(call.arguments.owner, m_owners.size());
  }
  const auto owner = static_cast<std::uint64_t>(known - m_owners.begin()) + 1;
  if (call.operation == ChannelOperation::kLock && call.answer == kChannelOk) {
    m_holder = owner;
    ++m_depth;
  } else if (call.operation == ChannelOperation::kUnlock && owner == m_holder && --m_depth == 0) {
    m_holder = 0;
  }
  return owner;
}

std::int32_t TracingChannel::WaitUntilOpen() {
  const std::int32_t code = ForwardingChannel::WaitUntilOpen();
  const bool told = [this] {
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_openingTold, true);
  }();
  if (!told && (code == kChannelOk || !HasBeenOpen()))
    WriteEvent(code == kChannelOk ? kTraceOpened : kTraceNotOpened, code);
  return code;
}

void TracingChannel::WriteName(const void* owner, std::size_t number) {
  const std::string name = m_nameOf(owner);
  if (!name.empty())
    m_sinks.Write(TraceEvent{
        std::string(kTraceOwner), m_sinks.Clock().Now(), {{"number", std::to_string(number)}, {"name", name}}});
}

std::int32_t TracingChannel::WaitUntilSent() {
  const std::int32_t code = ForwardingChannel::WaitUntilSent();
  if (code != kChannelOk)
    WriteEvent(kTraceNotSent, code);
  return code;
}

bool TracingChannel::HasEnded() {
  if (!ForwardingChannel::HasEnded())
    return false;
  const bool told = [this] {
    const std::lock_guard guard(m_mutex);
    return std::exchange(m_ended, true);
  }();
  if (!told)
    WriteEvent(kTraceChannelEnded, kNotOpen);
  return true;
}

void TracingChannel::WriteEvent(std::string_view name, std::int32_t code) noexcept {
  try {
    TraceEvent event{std::string(name), m_sinks.Clock().Now(), {}};
    if (code != kChannelOk)
      event.fields = {{"code", std::to_string(code)},
                      {"reason", ForwardingChannel::Inner()->GetInfoString(OND_INFO_ERROR, code)}};
    m_sinks.Write(event);
  } catch (const std::bad_alloc&) {
    // As above.
  }
}

} // namespace host
