// A device at the other end of a TCP connection, on this machine.
#pragma once

#include <cstdint>
#include <string>

class LocalServer {
public:
  // Listens on a port of the system's choice.
  LocalServer();
  ~LocalServer();
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  // As a channel of the host is asked for.
  std::string ChannelText() const;
  // Waits for somebody to connect.
  void Accept();
  // Ends the connection, and listens no more.
  void Close();

private:
  std::uintptr_t m_listener; // sockets of the system's
  std::uintptr_t m_connection;
  unsigned m_port = 0;
};
