// A trace as a tape: what the device did, in its order, and how far it has been played.
#pragma once

#include "host/trace/TraceReader.h"

#include <string>
#include <variant>
#include <vector>

namespace host {

// Plays the calls that reach a device; locks, states and texts are not among them. [one thread at a time]
class Tape {
public:
  struct Step {
    std::size_t record; // of the trace, the first being 1
    std::size_t line;
    const TraceCall* call; // null: here the connection ended for good
  };

  explicit Tape(Trace trace);
  Tape(const Tape&) = delete;
  Tape& operator=(const Tape&) = delete;

  const TraceHeader& Header() const { return m_trace.header; }
  const Trace& Whole() const { return m_trace; }

  // The next step; null at the end.
  const Step* Next() const { return m_next < m_steps.size() ? &m_steps[m_next] : nullptr; }
  void Advance() { ++m_next; }
  // The step before the next one was a receive that found nothing.
  bool IsBehindSilence() const;
  // Leaves out what is left of a row of receives that found nothing, once one of them has been played.
  void SkipSilence();
  // Passes by receives that found nothing, and by the end of the connection.
  void SkipToReply();
  // Goes to the next call that was like `asked`, from the beginning if there is none any more. False: there is none.
  bool Seek(const TraceCall& asked);

  // The text of an error as the device told it, the next time or before; empty: it did not.
  std::string RecordedErrorText(std::int64_t code) const;
  // The first event of this name; null when there is none.
  const TraceEvent* Find(std::string_view name) const;

private:
  const Trace m_trace;
  std::vector<Step> m_steps;
  std::size_t m_next = 0;
};

// Whether two calls ask the device for the same. Of a local file the name counts and not its folder, and its contents
// as far as the tape knows them.
bool AskTheSame(const TraceCall& tape, const TraceCall& run);
bool FindsNothing(const TraceCall& call);

} // namespace host
