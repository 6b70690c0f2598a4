// A tape as a channel: answers as the device did when the tape was recorded.
#pragma once

#include "host/channel/ForwardingChannel.h"
#include "host/channel/replay/Tape.h"
#include "host/support/SoleFile.h"

#include <tl/expected.hpp>

#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace host {

struct ReplaySettings {
  std::string file;   // a path as typed
  bool loose = false; // a call is answered by the next one of its like, instead of ending the run where it differs
  bool times = false; // answers take as long as they did
};

inline constexpr std::string_view kReplayForm = "replay:FILE[,loose][,times]";

// Of what stands behind "replay:". A path may have commas.
ReplaySettings ParseReplaySettings(std::string_view text);

// Strict, the first call that is not the tape's next ends the channel for good, and the text of its errors then tells
// both sides; at the end of the run, so does what is left of the tape. A row of receives that found nothing may be
// shorter, or longer where the tape has no reply behind it.
class ReplayChannel : public ForwardingChannel {
public:
  // The file is kept from being written as long as the channel exists. Otherwise what is wrong, with the file's name.
  static tl::expected<std::unique_ptr<Channel>, std::string> Open(const ReplaySettings& settings);
  ReplayChannel(ReplaySettings settings, Trace trace, SoleFile held);

  bool IsConnecting() override { return false; }
  std::int32_t WaitUntilOpen() override;
  std::int32_t WaitUntilSent() override;
  std::int32_t Finish() override;
  bool HasEnded() override;
  std::string Notice() override { return {}; }
  bool HasBeenOpen() override { return !m_notOpened; }

private:
  using Clock = std::chrono::steady_clock;

  void Around(ChannelCall& call) override;
  void Play(ChannelCall& call);
  const TraceCall* Find(const TraceCall& asked);
  const TraceCall* FindReply(const TraceCall& asked);
  const TraceCall* FindAnswer(const TraceCall& asked);
  const TraceCall* Differ(const TraceCall* asked);
  const TraceCall* TakeNext();
  std::chrono::microseconds TimeLeft(const TraceCall& reply) const;
  void Report(const TraceCall& played, ChannelCall& call) const;
  std::string Text(std::uint32_t what, std::int64_t code);

  const ReplaySettings m_settings;
  const SoleFile m_held;
  std::mutex m_mutex; // guards the fields below
  Tape m_tape;
  const TraceEvent* const m_notOpened;      // the tape's; null: the connection was opened
  std::string m_difference;                 // empty: none so far
  bool m_hungUp = false;                    // as the device did
  TraceCall m_rest;                         // the part of a reply that did not fit
  Clock::time_point m_asked = Clock::now(); // when the device was last asked for something,
  std::uint64_t m_askedOnTape = 0;          // and when that was on the tape
};

} // namespace host
