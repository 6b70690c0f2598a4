// Whether an object is still there when control comes back.
//
// Control leaves the module with every operation of the channel, every message sent, every callback of the host's,
// every box and file dialog. Behind any of them the host may run code of its own on this thread, and with it destroy
// the window, delete the object, connect another channel. So whoever goes on afterwards asks first:
//   the object    a CWatch, made before                   (CPresence)
//   the window    GetSafeHwnd(); the dialog itself stays  (CWnd::CKeepAlive)
//   the channel   the lock, which ends with both          (CONXDialog::CChannelLock)
//   a run         whether it was abandoned; what it needs stays until it has left (CSharedSession)
#pragma once

// A member of an object that its own operations may outlive. A copy of the object has a presence of its own. [one
// thread]
class CPresence {
public:
  // Made at the beginning of an operation, lives in its scope.
  class CWatch {
  public:
    explicit CWatch(CPresence& presence) : m_presence(&presence), m_outer(presence.m_innermost) {
      presence.m_innermost = this;
    }
    CWatch(const CWatch&) = delete;
    CWatch& operator=(const CWatch&) = delete;
    ~CWatch() {
      if (m_presence)
        m_presence->m_innermost = m_outer;
    }

    // False once the object is gone.
    explicit operator bool() const { return m_presence != nullptr; }

  private:
    friend class CPresence;
    CPresence* m_presence;
    CWatch* m_outer; // the operation below this one
  };

  CPresence() = default;
  CPresence(const CPresence&) {}
  CPresence& operator=(const CPresence&) { return *this; }
  ~CPresence() {
    for (CWatch* watch = m_innermost; watch; watch = watch->m_outer)
      watch->m_presence = nullptr;
  }

private:
  CWatch* m_innermost = nullptr;
};
