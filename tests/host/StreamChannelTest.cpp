// What a channel over a raw byte stream does where no real peer can bring it; tests/channels has the rest.
#include "host/channel/stream/StreamChannel.h"
#include "host/channel/ChannelErrors.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <new>
#include <vector>

using namespace host;
using std::chrono::steady_clock;

namespace {

constexpr std::chrono::seconds kPatience{30};
constexpr std::chrono::milliseconds kPause{1}; // between two looks

// What the test and the link share.
struct Wire {
  std::atomic<bool> outOfMemory = false;
  std::atomic<std::size_t> willTake = 0; // bytes that can still be sent
  std::string taken;                     // the link's until the channel has ended
};

class FakeLink : public Link {
public:
  FakeLink(Wire& wire, Signal& wake) : Link(wake), m_wire(wire) {}

  LinkOpened Open() override { return {}; }
  Movement Move(std::string_view toSend, bool, LinkClock::time_point) override {
    std::this_thread::sleep_for(kPause); // instead of waiting for the signal
    if (m_wire.outOfMemory)
      throw std::bad_alloc();
    Movement movement;
    movement.sent = std::min<std::size_t>(toSend.size(), m_wire.willTake);
    m_wire.willTake -= movement.sent;
    m_wire.taken += toSend.substr(0, movement.sent);
    return movement;
  }

private:
  Wire& m_wire;
};

// A channel over a wire, connected.
struct Stream {
  Wire wire;
  std::unique_ptr<Channel> channel = std::make_unique<StreamChannel>(
      "Fake", "settings", [this](Signal& wake) { return std::make_unique<FakeLink>(wire, wake); }, LineOptions());

  Stream() { REQUIRE(channel->WaitUntilOpen() == kChannelOk); }

  std::int32_t Send(const std::string& bytes) const { return channel->Transmit(bytes.data(), bytes.size(), nullptr); }
  std::string Text(std::int32_t code) const { return channel->GetInfoString(OND_INFO_ERROR, code); }
};

template <class Question>
void WaitFor(const char* what, Question happened) {
  const auto end = steady_clock::now() + kPatience;
  bool seen = happened();
  for (; !seen && steady_clock::now() < end; seen = happened())
    std::this_thread::sleep_for(kPause);
  REQUIRE_MESSAGE(seen, "waited for " << what);
}

} // namespace

TEST_CASE("stream: a link that runs out of memory") {
  Stream stream;
  stream.wire.outOfMemory = true;
  WaitFor("the end", [&] { return stream.channel->GetState() != 1; });
  CHECK(stream.Text(kNotOpen) == "Out of memory");
}

TEST_CASE("stream: too much to send is refused as a whole, in time, and remembered") {
  Stream stream;
  CHECK(stream.Send(std::string(StreamChannel::kSendCapacity + 1, 'x')) == kDataNotTaken);
  CHECK(stream.Send(std::string(StreamChannel::kSendCapacity - 1, 'a')) == kChannelOk);
  const auto start = steady_clock::now();
  std::uint64_t written = 5;
  CHECK(stream.channel->Transmit("bc", 2, &written) == kDataNotTaken);
  CHECK(written == 0);
  CHECK(steady_clock::now() - start < 10 * StreamChannel::kRoomTime); // a multiple, for a busy machine
  CHECK(stream.Send("d") == kChannelOk);
  stream.wire.willTake = 10;
  WaitFor("room", [&] { return stream.Send("e") == kChannelOk; });
  stream.wire.willTake = SIZE_MAX;
  CHECK(stream.channel->WaitUntilSent() == kDataNotTaken); // not all of it, some calls were refused
  stream.channel.reset();
  CHECK(stream.wire.taken.size() == StreamChannel::kSendCapacity + 1);
  CHECK(stream.wire.taken.ends_with("ade"));
}

TEST_CASE("stream: the end lets the last bytes go") {
  // The device begins to take bytes when the end is under way. On a busy machine that may be too late, but not always.
  std::string taken;
  for (int attempt = 0; attempt < 50 && taken.empty(); ++attempt) {
    Stream slow;
    slow.Send("last words");
    std::thread device([&] {
      std::this_thread::sleep_for(StreamChannel::kFarewellTime / 5);
      slow.wire.willTake = SIZE_MAX;
    });
    slow.channel.reset();
    device.join();
    taken = slow.wire.taken;
  }
  CHECK(taken == "last words");
}

TEST_CASE("stream: an end with nothing to send does not wait") {
  auto quickest = steady_clock::duration::max(); // the machine may be busy
  for (int attempt = 0; attempt < 5; ++attempt) {
    Stream stream;
    const auto start = steady_clock::now();
    stream.channel.reset();
    quickest = std::min(quickest, steady_clock::now() - start);
  }
  CHECK(quickest < StreamChannel::kFarewellTime);
}

TEST_CASE("stream: what a pace lets through, and when") {
  using std::chrono::milliseconds;
  const LinkClock::time_point start{};
  const std::string_view text = "ab\r\nc\n\rd";
  struct Row {
    Pace pace;
    std::vector<std::string_view> pieces;
    std::vector<int> times; // ms, of each piece
  };
  const Row rows[] = {
      {{}, {text}, {0}},
      {{milliseconds(0), milliseconds(50)}, {"ab\r\n", "c\n", "\r", "d"}, {0, 50, 100, 150}},
      {{milliseconds(10), milliseconds(50)},
       {"a", "b", "\r", "\n", "c", "\n", "\r", "d"},
       {0, 10, 20, 30, 80, 90, 140, 190}},
      {{milliseconds(10), milliseconds(0)},
       {"a", "b", "\r", "\n", "c", "\n", "\r", "d"},
       {0, 10, 20, 30, 40, 50, 60, 70}},
      {{milliseconds(0), milliseconds(50), milliseconds(1)}, {"ab\r\n", "c\n", "\r", "d"}, {0, 54, 106, 157}},
  };
  for (const Row& row : rows) {
    Pacer pacer(row.pace);
    std::size_t sent = 0;
    auto now = start;
    for (std::size_t i = 0; i < row.pieces.size(); ++i) {
      CAPTURE(i);
      const std::string_view unsent = text.substr(sent);
      if (i != 0)
        CHECK(pacer.LetThrough(unsent, now - milliseconds(1)).empty());
      CHECK(pacer.LetThrough(unsent, now) == row.pieces[i]);
      CHECK(now == start + milliseconds(row.times[i]));
      if (row.pace.characterTime.count() != 0) { // nothing more may go before this is sent
        CHECK(pacer.NextTime(unsent) == LinkClock::time_point::max());
        CHECK(pacer.LetThrough(unsent, now + std::chrono::hours(1)) == row.pieces[i]);
      }
      pacer.Sent(row.pieces[i].size());
      sent += row.pieces[i].size();
      now = pacer.NextTime(text.substr(sent));
    }
    CHECK(now == LinkClock::time_point::max());
  }
}
