// A link that is a descriptor: what sockets and serial ports have in common.
#pragma once

#include "host/channel/stream/Link.h"

#include <array>
#include <cstddef>

namespace host {

// Owns an open descriptor, or nothing (-1).
class Descriptor {
public:
  explicit Descriptor(int number = -1) : m_number(number) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : m_number(other.m_number) { other.m_number = -1; }
  Descriptor& operator=(Descriptor&& other) noexcept;

  int Number() const { return m_number; }
  bool IsOpen() const { return m_number >= 0; }

private:
  int m_number;
};

class DescriptorLink : public Link {
public:
  using Link::Link;

  Movement Move(std::string_view toSend, bool mayReceive, LinkClock::time_point until) final;

protected:
  // For `Open`: the descriptor, which does not block.
  void Attach(Descriptor descriptor) { m_descriptor = std::move(descriptor); }
  const Descriptor& Attached() const { return m_descriptor; }

  // As `write` does, without a signal to the process when the other side is gone.
  virtual std::ptrdiff_t Write(const char* bytes, std::size_t size) = 0;
  // The failure to report when the other side has ended the stream.
  virtual const char* EndOfStream() const = 0;

private:
  void Receive(Movement& movement);
  void Send(std::string_view bytes, Movement& movement);

  Descriptor m_descriptor;
  // Bytes at the front of `toSend` that the system holds and would still drop: not acknowledged by the other side, or
  // not yet on the line.
  std::size_t m_inFlight = 0;
  std::array<char, 65536> m_received;
};

} // namespace host
