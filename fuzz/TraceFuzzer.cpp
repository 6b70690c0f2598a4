// The input is a trace.
#include "fuzz/Expect.h"
#include "host/trace/TraceLine.h"
#include "host/trace/TraceReader.h"
#include "host/trace/TraceText.h"

namespace {

std::string Written(const host::Trace& trace) {
  std::string file;
  host::AppendTraceLine(file, trace.header);
  for (const host::TraceEntry& entry : trace.entries)
    std::visit([&](const auto& record) { host::AppendTraceLine(file, record); }, entry.record);
  return file;
}

} // namespace

// What can be read can be shown, and written so that it reads the same again.
extern "C" int LLVMFuzzerTestOneInput(const char* data, std::size_t size) {
  const auto trace = host::ParseTrace({data, size}, "fuzz");
  if (!trace)
    return 0;
  std::size_t shown = 0;
  host::WriteTraceText(*trace, {}, [&](std::string_view text) { shown += text.size(); });
  Expect(shown > 0, "a text");
  const std::string file = Written(*trace);
  const auto again = host::ParseTrace(file, "again");
  Expect(again && again->note.empty() && again->entries.size() == trace->entries.size(), "the same records");
  Expect(Written(*again) == file, "the same lines");
  return 0;
}
