// What a trace holds, line by line: a header, then calls of the channel and events beside them, in the order in which
// they ended. docs/trace.md describes the file; `TraceLine.h` turns records into its lines and back.
#pragma once

#include "host/channel/ChannelOperations.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace host {

inline constexpr std::string_view kTraceSchema = "ond-trace";
inline constexpr std::uint64_t kTraceVersion = 1;

// The first line. Texts of all records are UTF-8.
struct TraceHeader {
  std::int64_t start = 0; // wall time when the trace began, in microseconds since 1970 (UTC)
  std::string channel;    // as `--channel` has it
  std::string program;
};

// Which numbers, text and bytes a call has beside what all calls have. Numbers that the caller gave come first.
struct TraceShape {
  ChannelOperation operation;
  std::size_t given;                       // how many of the numbers the caller gave
  std::array<std::string_view, 5> numbers; // their names in the file; empty behind the last
  std::string_view text;                   // the name of the text; empty: there is none
  bool sends = false;                      // the bytes went to the device
  bool receives = false;                   // the bytes came from it
  bool transfersFile = false;              // has contents
};

inline constexpr std::array kTraceShapes = std::to_array<TraceShape>({
    {ChannelOperation::kGetInfoString, 2, {"what", "code"}, "info"},
    {ChannelOperation::kLock, 1, {"timeout"}, ""},
    {ChannelOperation::kUnlock, 0, {}, ""},
    {ChannelOperation::kGetState, 0, {}, ""},
    {ChannelOperation::kReceive, 0, {}, "", false, true},
    {ChannelOperation::kTransmit, 0, {}, "", true},
    {ChannelOperation::kTransmitFileFromMemory, 4, {"id", "type", "mode", "steps"}, "", true, false, true},
    {ChannelOperation::kTransmitFile, 4, {"id", "type", "mode", "steps"}, "path", false, false, true},
    {ChannelOperation::kReadDirectory, 0, {}, ""},
    {ChannelOperation::kGetDirectoryEntryCount, 0, {}, ""},
    {ChannelOperation::kGetDirectoryEntry, 1, {"index", "id", "type", "size"}, ""},
    {ChannelOperation::kGetDirectoryInfo,
     0,
     {"freeFactorA", "freeFactorB", "fileCount", "bytesInFiles", "bytesOnDevice"},
     ""},
    {ChannelOperation::kDeleteDeviceFile, 1, {"id"}, ""},
    {ChannelOperation::kFormatDevice, 1, {"usedBlocksOnly"}, ""},
});

consteval bool AreShapesInOrder() {
  for (std::size_t i = 0; i < kTraceShapes.size(); ++i) {
    if (IndexOf(kTraceShapes[i].operation) != i)
      return false;
  }
  return kTraceShapes.size() == kChannelOperations.size();
}
static_assert(AreShapesInOrder());

// What is known of a file's bytes.
struct FileContents {
  std::uint64_t size = 0;
  std::uint32_t crc32 = 0;

  bool operator==(const FileContents&) const = default;
};

// One call of an operation.
struct TraceCall {
  ChannelOperation operation{};
  std::uint64_t start = 0;    // microseconds since the trace's start, on a clock that only goes forward
  std::uint64_t duration = 0; // microseconds
  std::uint64_t owner = 0;    // who held the channel or asked for it, counted from 1 as they appear; 0: nobody
  std::int64_t result = 0;    // the code, state or number that the caller got
  std::array<std::int64_t, 5> numbers{}; // as its shape names them
  std::string text;
  std::string bytes;
  std::optional<FileContents> contents; // of a transferred file that could be read; older traces have none
  std::vector<std::uint32_t> progress;  // a transfer's reports

  const TraceShape& Shape() const { return kTraceShapes[IndexOf(operation)]; }
  std::string_view Name() const { return kChannelOperations[IndexOf(operation)].name; }
};

// Something beside the calls: a question to the operator, the end of a connection.
struct TraceEvent {
  std::string name;                                        // "question", …
  std::uint64_t start = 0;                                 // as above
  std::vector<std::pair<std::string, std::string>> fields; // names and texts

  // The text of a field; empty when there is none.
  std::string_view Field(std::string_view field) const {
    for (const auto& [key, value] : fields) {
      if (key == field)
        return value;
    }
    return {};
  }
};

using TraceRecord = std::variant<TraceCall, TraceEvent>;

// Events that the host writes itself.
inline constexpr std::string_view kTraceEndEvent = "end";              // of the trace; "cpu": computing time in us
inline constexpr std::string_view kTraceOpened = "opened";             // the connection, when a run began
inline constexpr std::string_view kTraceNotOpened = "notOpened";       // it never was; "code", "reason"
inline constexpr std::string_view kTraceChannelEnded = "channelEnded"; // for good; "code", "reason"
inline constexpr std::string_view kTraceLineLost = "lineLost";         // to be opened again; "reason"
inline constexpr std::string_view kTraceLineOpenAgain = "lineOpenAgain";
inline constexpr std::string_view kTraceNotSent = "notSent";   // at the end of a run; "code", "reason"
inline constexpr std::string_view kTraceQuestion = "question"; // "caption", "prompt", "answer" (none: Cancel), "by"
// From the windows, whose channels come and go.
inline constexpr std::string_view kTraceConnect = "connect";       // to "channel"; owners count anew
inline constexpr std::string_view kTraceLost = "lost";             // it is not open any more, or never was; "reason"
inline constexpr std::string_view kTraceDisconnect = "disconnect"; // by the user
inline constexpr std::string_view kTraceOwner = "owner";           // "number" is "name"

} // namespace host
