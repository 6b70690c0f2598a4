// A link without a system: the test decides what moves.
#pragma once

#include "host/channel/stream/Link.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

namespace host {

// What the test and the link share; every field may be changed at any time under `mutex`.
struct FakeWire {
  std::mutex mutex;
  bool answered = false;    // the attempt to connect ends
  LinkFailure failure;      // set: the link fails, in connecting or later
  bool throws = false;      // the link throws instead
  std::size_t willTake = 0; // bytes that can still be sent
  std::string taken;        // what was sent
  std::string arriving;     // what can be received
  bool ended = false;       // the link is destroyed
};

class FakeLink : public Link {
public:
  static constexpr std::size_t kLargestPiece = 10000;
  static constexpr std::chrono::milliseconds kPause{1}; // between two looks at the wire

  explicit FakeLink(FakeWire& wire) : m_wire(wire) {}
  ~FakeLink() override {
    const std::lock_guard guard(m_wire.mutex);
    m_wire.ended = true;
  }

  // The signal is not waited for here; `answered` stands for it.
  LinkFailure Open() override {
    while (true) {
      {
        const std::lock_guard guard(m_wire.mutex);
        if (m_wire.answered)
          return m_wire.failure;
      }
      std::this_thread::sleep_for(kPause);
    }
  }

  Movement Move(std::string_view toSend, bool mayReceive) override {
    Movement movement = Look(toSend, mayReceive);
    if (movement.sent == 0 && movement.received.empty() && movement.failure.empty())
      std::this_thread::sleep_for(kPause);
    return movement;
  }

private:
  Movement Look(std::string_view toSend, bool mayReceive) {
    const std::lock_guard guard(m_wire.mutex);
    if (m_wire.throws)
      throw std::runtime_error("fake");
    Movement movement;
    movement.sent = std::min(toSend.size(), m_wire.willTake);
    m_wire.willTake -= movement.sent;
    m_wire.taken += toSend.substr(0, movement.sent);
    if (mayReceive) {
      m_received = m_wire.arriving.substr(0, kLargestPiece);
      m_wire.arriving.erase(0, m_received.size());
      movement.received = m_received;
    }
    if (m_wire.arriving.empty())
      movement.failure = m_wire.failure;
    return movement;
  }

  FakeWire& m_wire;
  std::string m_received;
};

} // namespace host
