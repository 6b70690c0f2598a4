// Owner of an open file of the system's.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <utility>

namespace platform {

class Descriptor {
public:
  explicit Descriptor(int value) : m_value(value) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool IsOpen() const { return m_value >= 0; }
  bool IsRegularFile() const {
    struct stat facts;
    return fstat(m_value, &facts) == 0 && S_ISREG(facts.st_mode);
  }
  int Get() const { return m_value; }
  int Release() { return std::exchange(m_value, -1); }
  // False also when nothing was open.
  bool Close() { return IsOpen() && close(Release()) == 0; }

private:
  int m_value;
};

} // namespace platform
