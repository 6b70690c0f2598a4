#include "host/channel/replay/ReplayChannel.h"

#include "host/channel/ChannelErrors.h"
#include "host/channel/replay/Difference.h"
#include "host/support/Text.h"
#include "host/support/Utf8.h"
#include "host/trace/CallRecord.h"
#include "host/trace/TraceLine.h"

#include <algorithm>
#include <new>
#include <thread>

namespace host {
namespace {

using std::chrono::microseconds;

constexpr microseconds kLongestWait{100000}; // for a reply that had come at once

const TraceCall kSilence = [] {
  TraceCall call;
  call.operation = ChannelOperation::kReceive;
  return call;
}();

bool TakeWord(std::string_view& text, std::string_view word) {
  if (!text.ends_with(word))
    return false;
  text.remove_suffix(word.size());
  return true;
}

TraceCall Asked(const ChannelCall& call) {
  TraceCall asked;
  asked.operation = call.operation;
  TakeGiven(call, asked);
  asked.text = ToUtf8(asked.text);
  return asked;
}

} // namespace

ReplaySettings ParseReplaySettings(std::string_view text) {
  ReplaySettings settings;
  for (bool found = true; found;) {
    const bool loose = TakeWord(text, ",loose");
    const bool times = TakeWord(text, ",times");
    settings.loose = settings.loose || loose;
    settings.times = settings.times || times;
    found = loose || times;
  }
  settings.file = text;
  return settings;
}

tl::expected<std::unique_ptr<Channel>, std::string> ReplayChannel::Open(const ReplaySettings& settings) {
  auto held = SoleFile::Hold(settings.file);
  if (!held)
    return tl::unexpected("cannot play " + settings.file + ": " + held.error());
  auto trace = ReadTrace(settings.file);
  if (!trace)
    return tl::unexpected(trace.error());
  return std::make_unique<ReplayChannel>(settings, std::move(*trace), std::move(*held));
}

ReplayChannel::ReplayChannel(ReplaySettings settings, Trace trace, SoleFile held)
    : ForwardingChannel(nullptr), m_settings(std::move(settings)), m_held(std::move(held)), m_tape(std::move(trace)),
      m_notOpened(m_tape.Find(kTraceNotOpened)) {}

std::int32_t ReplayChannel::WaitUntilOpen() {
  return HasBeenOpen() ? kChannelOk : kNotOpen;
}

bool ReplayChannel::HasEnded() {
  const std::lock_guard guard(m_mutex);
  if (m_notOpened)
    return true;
  if (m_tape.Next() && !m_tape.Next()->call) {
    m_tape.Advance();
    m_hungUp = true;
  }
  return m_hungUp || !m_difference.empty();
}

std::int32_t ReplayChannel::WaitUntilSent() {
  const std::lock_guard guard(m_mutex);
  if (!m_difference.empty())
    return kChannelOk; // which has been told
  const TraceEvent* const notSent = m_tape.Find(kTraceNotSent);
  std::int32_t code = kChannelOk;
  if (notSent && !ParseNumber(notSent->Field("code"), code))
    code = kDataNotTaken;
  return code;
}

std::int32_t ReplayChannel::Finish() {
  const std::lock_guard guard(m_mutex);
  if (m_settings.loose || !m_difference.empty())
    return kChannelOk;
  m_tape.SkipToReply();
  if (!m_tape.Next())
    return kChannelOk;
  Differ(nullptr);
  return kNotOnTape;
}

void ReplayChannel::Around(ChannelCall& call) {
  try {
    if (call.operation == ChannelOperation::kGetInfoString) {
      thread_local std::string text; // the caller's until its thread asks again
      text = Text(call.arguments.number, call.arguments.code);
      call.text = text.c_str();
    } else if (call.operation == ChannelOperation::kGetState) {
      const std::lock_guard guard(m_mutex);
      call.answer = m_notOpened || m_hungUp || !m_difference.empty() ? 2 : 1;
    } else {
      Play(call);
    }
  } catch (const std::bad_alloc&) {
    call.AnswerInstead(kOutOfMemory);
  }
}

void ReplayChannel::Play(ChannelCall& call) {
  const TraceCall asked = Asked(call);
  const TraceCall* played = nullptr;
  {
    const std::lock_guard guard(m_mutex);
    if (m_notOpened) {
      call.AnswerInstead(kNotOpen);
      return;
    }
    played = Find(asked);
    if (!played) {
      call.AnswerInstead(kNotOnTape);
      return;
    }
    const std::size_t moved = GiveAnswer(*played, call);
    if (asked.operation == ChannelOperation::kReceive && moved < played->bytes.size()) {
      TraceCall rest = *played;
      rest.bytes.erase(0, moved);
      m_rest = std::move(rest);
    } else if (played == &m_rest) {
      m_rest.bytes.clear();
    }
  }
  Report(*played, call);
}

// Null: there is no such call on the tape. What is found stays the tape's or this object's.
const TraceCall* ReplayChannel::Find(const TraceCall& asked) {
  if (!m_difference.empty())
    return nullptr;
  if (asked.operation != ChannelOperation::kReceive)
    return FindAnswer(asked);
  return m_rest.bytes.empty() ? FindReply(asked) : &m_rest;
}

const TraceCall* ReplayChannel::FindReply(const TraceCall& asked) {
  const bool wasSilent = m_tape.IsBehindSilence();
  if (m_settings.loose)
    m_tape.SkipToReply();
  const Tape::Step* const step = m_tape.Next();
  if (!step || !step->call || step->call->operation != ChannelOperation::kReceive)
    return m_settings.loose || (step && wasSilent) ? &kSilence : Differ(&asked);
  if (const auto left = TimeLeft(*step->call); left > microseconds(0) && !FindsNothing(*step->call)) {
    if (wasSilent || left > kLongestWait)
      return &kSilence;
    std::this_thread::sleep_for(left);
  }
  return TakeNext();
}

const TraceCall* ReplayChannel::FindAnswer(const TraceCall& asked) {
  if (m_settings.loose) {
    if (!m_tape.Seek(asked))
      return nullptr;
  } else {
    m_tape.SkipSilence();
    if (m_tape.Next() && !m_tape.Next()->call)
      m_tape.Advance(); // nobody has asked whether the channel has ended
    if (!m_tape.Next() || !m_tape.Next()->call || !AskTheSame(*m_tape.Next()->call, asked))
      return Differ(&asked);
  }
  const TraceCall* const answer = TakeNext();
  m_asked = Clock::now();
  m_askedOnTape = answer->start;
  return answer;
}

const TraceCall* ReplayChannel::TakeNext() {
  const TraceCall* const call = m_tape.Next()->call;
  m_tape.Advance();
  return call;
}

// The run's side is `asked`, or nothing more.
const TraceCall* ReplayChannel::Differ(const TraceCall* asked) {
  const std::string& note = m_tape.Whole().note;
  m_difference = (note.empty() ? "" : note + "\n") + DifferenceText(m_settings.file, m_tape.Next(), asked);
  return nullptr;
}

// Until a reply comes; not positive: it is there.
microseconds ReplayChannel::TimeLeft(const TraceCall& reply) const {
  if (!m_settings.times)
    return microseconds(0);
  const microseconds due(reply.start - std::min(m_askedOnTape, reply.start));
  return due - std::chrono::duration_cast<microseconds>(Clock::now() - m_asked);
}

// What remains of a call when it has been answered: its reports, and the time that it took.
void ReplayChannel::Report(const TraceCall& played, ChannelCall& call) const {
  const ChannelArguments& given = call.arguments;
  const bool takesTime = m_settings.times && call.operation != ChannelOperation::kReceive;
  const microseconds pause(takesTime ? played.duration / (played.progress.size() + 1) : 0);
  std::this_thread::sleep_for(pause);
  for (const std::uint32_t step : played.progress) {
    if (given.callback && given.callback(given.context, step) != 0) {
      call.AnswerInstead(played.result != 0 ? played.result : std::int64_t{kTransferAborted});
      return;
    }
    std::this_thread::sleep_for(pause);
  }
}

std::string ReplayChannel::Text(std::uint32_t what, std::int64_t code) {
  const std::lock_guard guard(m_mutex);
  if (what == OND_INFO_DESCRIPTION)
    return "Tape " + m_settings.file + " of " + m_tape.Header().channel;
  if (what == OND_INFO_CONFIGURATION)
    return "recorded " + TraceTimeText(m_tape.Header().start);
  if (what != OND_INFO_ERROR)
    return {};
  if (m_notOpened && code == kNotOpen)
    return std::string(m_notOpened->Field("reason"));
  if (!m_difference.empty() && (code == kNotOnTape || code == kNotOpen))
    return m_difference;
  if (std::string text = m_tape.RecordedErrorText(code); !text.empty())
    return text;
  const char* const known = ErrorCodeText(code);
  return known ? known : "Error " + std::to_string(code);
}

} // namespace host
