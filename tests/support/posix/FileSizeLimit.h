// A disk that is full, as far as this process can tell.
#pragma once

#include <doctest/doctest.h>

#include <sys/resource.h>

#include <csignal>

// While it exists no file grows beyond `bytes`.
class FileSizeLimit {
public:
  explicit FileSizeLimit(rlim_t bytes) : m_previousHandler(std::signal(SIGXFSZ, SIG_IGN)) {
    REQUIRE(getrlimit(RLIMIT_FSIZE, &m_previous) == 0);
    const rlimit limit{bytes, m_previous.rlim_max};
    REQUIRE(setrlimit(RLIMIT_FSIZE, &limit) == 0);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &m_previous);
    std::signal(SIGXFSZ, m_previousHandler);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
  rlimit m_previous{};
  void (*m_previousHandler)(int);
};
