// What a trace costs per call in a flood, beside the same calls untraced, and how fast the tape plays them again.
#include "bench/SideBySide.h"
#include "host/channel/replay/ReplayChannel.h"
#include "host/trace/CallRecord.h"
#include "host/trace/TraceWriter.h"
#include "host/trace/TracingChannel.h"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <vector>

namespace {

constexpr std::size_t kCalls = 100000;

// Every receive finds the same bytes, and everything is taken.
class ReadyChannel : public host::ForwardingChannel {
public:
  explicit ReadyChannel(std::size_t bytes) : ForwardingChannel(nullptr) { m_reply.bytes.assign(bytes, 'x'); }

private:
  void Around(host::ChannelCall& call) override { host::GiveAnswer(m_reply, call); }

  host::TraceCall m_reply;
};

// Of this thread.
double ComputingMilliseconds() {
  timespec time = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// Half of the calls send as many bytes as the other half receive.
void Talk(host::Channel& channel, std::size_t bytes) {
  const std::string question(bytes, 'y');
  std::vector<char> buffer(4096);
  std::uint64_t moved = 0;
  for (std::size_t i = 0; i < kCalls / 2; ++i) {
    channel.Transmit(question.data(), question.size(), &moved);
    channel.Receive(buffer.data(), static_cast<std::uint32_t>(buffer.size()), &moved);
  }
}

double MicrosecondsPerCall(double milliseconds) {
  return milliseconds * 1000 / kCalls;
}

bool Measure(std::size_t bytes, const std::string& file) {
  bool sound = true;
  std::size_t traced = 0;
  double computing = 1e300;
  const SideBySide best = MeasureSideBySide(
      5,
      [&] {
        // Until the last record is in the file.
        host::TraceFork records;
        auto writer = host::TraceWriter::Open(file, {}, records.Clock(), [&](const std::string&) { sound = false; });
        records.Add(**writer);
        host::TracingChannel channel(std::make_unique<ReadyChannel>(bytes), records);
        const double start = ComputingMilliseconds();
        Talk(channel, bytes);
        computing = std::min(computing, ComputingMilliseconds() - start);
      },
      [&] {
        ReadyChannel channel(bytes);
        Talk(channel, bytes);
      });
  double playing = 0;
  const double opening = MillisecondsOf([&] {
    auto tape = host::ReplayChannel::Open({file, false, false});
    sound = sound && tape;
    playing = MillisecondsOf([&] { Talk(**tape, bytes); });
    sound = sound && !(*tape)->HasEnded() && (*tape)->Finish() == 0;
    traced = std::filesystem::file_size(file);
  });
  std::printf(
      "%5zu bytes a call: traced %6.2f us (%5.2f us of computing), untraced %5.2f us, %4zu bytes of file; played "
      "%5.2f us, read %5.2f us\n",
      bytes, MicrosecondsPerCall(best.first), MicrosecondsPerCall(computing), MicrosecondsPerCall(best.second),
      traced / kCalls, MicrosecondsPerCall(playing), MicrosecondsPerCall(opening - playing));
  return sound;
}

} // namespace

int main() {
  const std::string file = (std::filesystem::temp_directory_path() / "ond-bench-trace.jsonl").string();
  bool sound = true;
  for (const std::size_t bytes : {1, 32, 256, 1024})
    sound = Measure(bytes, file) && sound;
  std::filesystem::remove(file);
  if (!sound)
    std::fprintf(stderr, "the trace was not written, or not what the tape played\n");
  return sound ? 0 : 1;
}
