// A question to the user as a record of a trace.
#pragma once

#include "host/answers/Question.h"
#include "host/trace/TraceClock.h"
#include "host/trace/TraceRecord.h"

namespace host {

// For one that has just been answered; the event begins when it was asked.
inline TraceEvent QuestionEvent(const AnsweredQuestion& answered, const TraceClock& clock) {
  const auto took = std::chrono::duration_cast<std::chrono::microseconds>(answered.answered - answered.asked);
  TraceEvent event;
  event.name = kTraceQuestion;
  event.start = clock.Now() - static_cast<std::uint64_t>(took.count());
  event.fields = {{"caption", answered.question.caption}, {"prompt", answered.question.prompt}};
  if (answered.answer)
    event.fields.emplace_back("answer", *answered.answer);
  event.fields.emplace_back("by", answered.by);
  return event;
}

} // namespace host
