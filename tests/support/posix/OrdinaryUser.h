// Takes away what only a system's administrator may do.
#pragma once

#include <unistd.h>

// While one exists, access rights of files hold for this process also when root runs the tests. One object at a time.
class OrdinaryUser {
public:
  OrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    m_wasRoot = geteuid() == 0 && seteuid(kNobody) == 0;
  }
  ~OrdinaryUser() { [[maybe_unused]] const bool again = m_wasRoot && seteuid(0) == 0; }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
  bool m_wasRoot;
};
