// What every channel over a raw byte stream does, whatever the system's link is.
#include "host/channel/stream/StreamChannel.h"
#include "host/channel/ChannelErrors.h"
#include "tests/host/FakeLink.h"

#include <doctest/doctest.h>

#include <chrono>
#include <type_traits>

using namespace host;
using std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds kPatience{30};

template <class Question>
void WaitFor(const char* what, Question happened) {
  const auto end = steady_clock::now() + kPatience;
  bool seen = happened();
  for (; !seen && steady_clock::now() < end; seen = happened())
    std::this_thread::sleep_for(FakeLink::kPause);
  REQUIRE_MESSAGE(seen, "waited for " << what);
}

// A channel over a wire; by default connected, with a device that takes everything.
struct Stream {
  FakeWire wire;
  std::unique_ptr<Channel> channel =
      std::make_unique<StreamChannel>("Fake", "settings", std::make_unique<FakeLink>(wire));

  explicit Stream(bool connected = true) {
    if (connected) {
      Change([](FakeWire& each) { each.willTake = SIZE_MAX; });
      Answer();
      REQUIRE(channel->WaitUntilOpen() == kChannelOk);
    }
  }
  ~Stream() { Answer(); }

  void Answer() {
    Change([](FakeWire& each) { each.answered = true; });
  }
  template <class Work>
  std::invoke_result_t<Work, FakeWire&> Change(Work work) {
    const std::lock_guard guard(wire.mutex);
    return work(wire);
  }

  std::int32_t Send(const std::string& bytes) const { return channel->Transmit(bytes.data(), bytes.size(), nullptr); }
  std::int32_t Receive(std::string& bytes, std::uint32_t size = 100) const {
    std::string buffer(size, '\0');
    std::uint64_t count = 0;
    const std::int32_t code = channel->Receive(buffer.data(), size, &count);
    bytes.append(buffer, 0, static_cast<std::size_t>(count));
    return code;
  }
  std::string Text(std::int32_t code) const { return channel->GetInfoString(OND_INFO_ERROR, code); }
  std::size_t Left() {
    return Change([](FakeWire& each) { return each.arriving.size(); });
  }
};

// The code of each operation that can fail.
std::vector<std::int32_t> Codes(const Stream& stream) {
  std::string ignored;
  Channel& channel = *stream.channel;
  return {stream.Receive(ignored),
          stream.Send("x"),
          channel.TransmitFileFromMemory("x", 1, 1, 1, 0, nullptr, nullptr, 1, 40),
          channel.TransmitFile("none", 1, 1, 0, nullptr, nullptr, 1, 40),
          channel.ReadDirectory(),
          channel.DeleteDeviceFile(1),
          channel.FormatDevice(0)};
}

} // namespace

TEST_CASE("stream: connecting, open, closed: state, codes and texts") {
  Stream stream(false);
  CHECK(stream.channel->GetState() == 2);
  CHECK(Codes(stream) == std::vector<std::int32_t>(7, kNotOpen));
  CHECK(stream.Text(kNotOpen) == "Channel is not open yet");
  stream.Answer();
  CHECK(stream.channel->WaitUntilOpen() == kChannelOk);
  CHECK(stream.channel->GetState() == 1);
  const std::int32_t none = kNoDeviceFiles;
  CHECK(Codes(stream) == std::vector<std::int32_t>{0, 0, none, none, none, none, none});
  CHECK(stream.Text(none) == "Device files are not possible over a raw byte stream");
  stream.Change([](FakeWire& wire) { wire.failure = "Cable pulled"; });
  WaitFor("the end", [&] { return stream.channel->GetState() != 1; });
  CHECK(stream.wire.ended); // the port is free again
  CHECK(Codes(stream) == std::vector<std::int32_t>(7, kNotOpen));
  CHECK(stream.Text(kNotOpen) == "Cable pulled");
}

TEST_CASE("stream: a connection that cannot be made, and a link that runs out of memory") {
  Stream refused(false);
  refused.Change([](FakeWire& wire) { wire.failure = "Refused"; });
  refused.Answer();
  CHECK(refused.channel->WaitUntilOpen() == kNotOpen);
  CHECK(refused.Text(kNotOpen) == "Refused");

  Stream throwing;
  throwing.Change([](FakeWire& wire) { wire.throws = true; });
  WaitFor("the end", [&] { return throwing.channel->GetState() != 1; });
  CHECK(throwing.Text(kNotOpen) == "Out of memory");
}

TEST_CASE("stream: bytes go out in their order, however few the device takes at a time") {
  Stream stream;
  stream.Change([](FakeWire& wire) { wire.willTake = 0; });
  std::string all;
  for (int i = 0; i < 100; ++i) {
    const std::string piece(static_cast<std::size_t>(i), static_cast<char>('!' + i % 90));
    CHECK(stream.Send(piece) == kChannelOk);
    all += piece;
    stream.Change([&](FakeWire& wire) { wire.willTake += 37; });
  }
  stream.Change([](FakeWire& wire) { wire.willTake = SIZE_MAX; });
  CHECK(stream.channel->WaitUntilSent() == kChannelOk);
  CHECK(stream.Change([](FakeWire& wire) { return wire.taken; }) == all);
}

TEST_CASE("stream: what has arrived is read before the end shows") {
  Stream stream;
  std::string sent;
  for (int i = 0; i < 5000; ++i)
    sent += static_cast<char>(i * 7);
  stream.Change([&](FakeWire& wire) {
    wire.arriving = sent;
    wire.failure = "Closed";
  });
  WaitFor("the end", [&] { return stream.channel->GetState() != 1; });
  std::string received;
  while (stream.Receive(received, 999) == kChannelOk) {
  }
  CHECK(received == sent);
}

TEST_CASE("stream: bytes that nobody reads stay outside beyond the bound, and come later") {
  Stream stream;
  constexpr std::size_t kCapacity = StreamChannel::kReceiveCapacity;
  const std::string sent(3 * kCapacity, 'a');
  stream.Change([&](FakeWire& wire) { wire.arriving = sent; });
  WaitFor("a full buffer", [&] { return stream.Left() <= sent.size() - kCapacity; });
  std::string received;
  CHECK(stream.Receive(received, 1) == kChannelOk);
  CHECK(stream.Left() >= sent.size() - kCapacity - 2 * FakeLink::kLargestPiece);
  WaitFor("all bytes", [&] {
    stream.Receive(received, 100000);
    return received.size() == sent.size();
  });
}

TEST_CASE("stream: too much to send is refused as a whole, in time, and remembered") {
  Stream stream;
  stream.Change([](FakeWire& wire) { wire.willTake = 0; });
  CHECK(stream.Send(std::string(StreamChannel::kSendCapacity + 1, 'x')) == kDataNotTaken);
  CHECK(stream.Send(std::string(StreamChannel::kSendCapacity - 1, 'a')) == kChannelOk);
  const auto start = steady_clock::now();
  std::uint64_t written = 5;
  CHECK(stream.channel->Transmit("bc", 2, &written) == kDataNotTaken);
  CHECK(written == 0);
  CHECK(steady_clock::now() - start < 10 * StreamChannel::kRoomTime); // a multiple, for a busy machine
  CHECK(stream.Send("d") == kChannelOk);
  CHECK(stream.Text(kDataNotTaken) == "Device does not take its data");
  stream.Change([](FakeWire& wire) { wire.willTake = 10; });
  WaitFor("room", [&] { return stream.Send("e") == kChannelOk; });
  stream.Change([](FakeWire& wire) { wire.willTake = SIZE_MAX; });
  CHECK(stream.channel->WaitUntilSent() == kDataNotTaken); // not all of it, some calls were refused
  const std::string taken = stream.Change([](FakeWire& wire) { return wire.taken; });
  CHECK(taken.size() == StreamChannel::kSendCapacity + 1);
  CHECK(taken.ends_with("ade"));
}

TEST_CASE("stream: bytes that never left are told") {
  Stream stream;
  stream.Change([](FakeWire& wire) { wire.willTake = 3; });
  CHECK(stream.Send("abcd") == kChannelOk);
  stream.Change([](FakeWire& wire) { wire.failure = "Closed"; });
  CHECK(stream.channel->WaitUntilSent() == kNotOpen);
}

TEST_CASE("stream: the end lets the last bytes go, but does not wait for a device that takes none") {
  // The device begins to take bytes when the end is under way. On a busy machine that may be too late, but not always.
  std::string taken;
  for (int attempt = 0; attempt < 50 && taken.empty(); ++attempt) {
    Stream slow;
    slow.Change([](FakeWire& wire) { wire.willTake = 0; });
    slow.Send("last words");
    std::thread device([&] {
      std::this_thread::sleep_for(StreamChannel::kFarewellTime / 5);
      slow.Change([](FakeWire& wire) { wire.willTake = SIZE_MAX; });
    });
    slow.channel.reset();
    device.join();
    taken = slow.wire.taken;
  }
  CHECK(taken == "last words");

  Stream stuck;
  stuck.Change([](FakeWire& wire) { wire.willTake = 0; });
  stuck.Send("x");
  const auto start = steady_clock::now();
  stuck.channel.reset();
  CHECK(steady_clock::now() - start < 10 * StreamChannel::kFarewellTime);
  CHECK(stuck.wire.ended);
}
