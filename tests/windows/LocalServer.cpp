#include "tests/windows/LocalServer.h"

#include <doctest/doctest.h>

#include <utility>
#include <winsock2.h>

LocalServer::LocalServer() : m_listener(INVALID_SOCKET), m_connection(INVALID_SOCKET) {
  WSADATA data{};
  REQUIRE(WSAStartup(MAKEWORD(2, 2), &data) == 0);
  m_listener = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  int size = sizeof address;
  REQUIRE(bind(m_listener, reinterpret_cast<sockaddr*>(&address), size) == 0);
  REQUIRE(listen(m_listener, 1) == 0);
  REQUIRE(getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size) == 0);
  m_port = ntohs(address.sin_port);
}

LocalServer::~LocalServer() {
  Close();
  WSACleanup();
}

std::string LocalServer::ChannelText() const {
  return "tcp:127.0.0.1:" + std::to_string(m_port);
}

void LocalServer::Accept() {
  fd_set waiting{1, {m_listener}};
  timeval limit{20, 0};
  REQUIRE_MESSAGE(select(0, &waiting, nullptr, nullptr, &limit) == 1, "somebody connects within 20 s");
  m_connection = accept(m_listener, nullptr, nullptr);
  REQUIRE(m_connection != INVALID_SOCKET);
}

void LocalServer::Close() {
  for (std::uintptr_t* const each : {&m_connection, &m_listener}) {
    if (*each != INVALID_SOCKET)
      closesocket(std::exchange(*each, INVALID_SOCKET));
  }
}
