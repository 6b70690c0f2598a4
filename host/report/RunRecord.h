// What a call of `run` did, as the reports tell it. Texts are bytes as scripts and devices have them; times are counted
// from the beginning of their script.
#pragma once

#include "host/answers/Question.h"
#include "host/report/BoundedLog.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace host {

using Microseconds = std::chrono::microseconds;

enum class Verdict {
  kPassed,
  kFailed,    // the script ran, and the part is bad
  kNotTested, // the run failed or was stopped: nothing is known about the part
  kNotRun,    // a script in front of it ended the call
};

struct OutputLine {
  Microseconds at;
  std::string text; // without its end
};

// A line that the script library's `limit` prints. Numbers stand as printed, decimal.
struct Measurement {
  Microseconds at{};
  std::string name;
  std::string value;
  std::string low;  // empty: there is no such limit
  std::string high; // likewise
  std::string unit;
  bool passed = false;
};

// A call that reached the channel: bytes, or a file, or a failure.
struct TrafficEntry {
  Microseconds at;
  Microseconds took;
  std::string_view operation;
  std::int64_t answer; // of the operation: 0 is success
  std::uint64_t bytes;
  std::string data; // the first of the bytes
  bool toDevice;
};

struct NamedValue {
  std::string name;
  std::variant<std::int64_t, std::uint64_t, std::string> value;
};

struct TimedAnswer {
  Microseconds at;
  Microseconds took;
  AnsweredQuestion answered;
};

struct ScriptRecord {
  std::string script;
  std::chrono::system_clock::time_point begun;
  Microseconds took{};
  int code = 0; // that a call with this script alone would exit with
  Verdict verdict = Verdict::kNotRun;
  std::string reason; // why it did not pass; empty when it did
  BoundedLog<OutputLine> output;
  std::vector<Measurement> measurements;
  std::vector<TimedAnswer> questions;
  BoundedLog<TrafficEntry> traffic;
  std::vector<NamedValue> values; // those asked for, as they were after the run
};

struct SessionRecord {
  std::string program;
  std::string channel;
  std::chrono::system_clock::time_point begun;
  std::vector<ScriptRecord> scripts;
  int code = 0;
};

} // namespace host
