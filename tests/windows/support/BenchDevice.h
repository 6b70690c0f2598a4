// A device that does what a test says: transfers that can be held up, answers in portions.
#pragma once

#include "tests/support/GuardedChannel.h"

#include <initializer_list>
#include <thread>

class BenchDevice : public GuardedChannel {
public:
  static constexpr std::int32_t kAborted = -9;

  BenchDevice() {
    directory = {{3, 1, 100}, {7, 2, 400}, {200, 0, 500}};
    duringTransfer = [this](TransferProgressCallback report, void* context) { return Transfer(report, context); };
    duringReceive = [this](char* buffer, std::uint32_t size) { return Take(buffer, size); };
  }

  // While set, transfers stand still after having reported `steps`, until the client aborts or this is cleared.
  std::atomic<bool> hold = false;
  std::atomic<std::uint32_t> steps = 40;
  // Called on the copying thread within each transfer, before it stands still. [set while there is none]
  std::function<void()> beforeHold;
  std::atomic<int> transfers = 0; // begun

  // Portions: each is all that one poll finds.
  void Answer(const std::vector<std::string>& portions) {
    const std::lock_guard guard(m_portionsMutex);
    m_portions.insert(m_portions.end(), portions.begin(), portions.end());
  }
  bool AllTaken() const {
    const std::lock_guard guard(m_portionsMutex);
    return m_portions.empty();
  }

  // Set on the host's thread.
  bool endless = false;               // one line after the other, without a pause
  std::chrono::milliseconds delay{0}; // before each answer

private:
  std::int32_t Transfer(TransferProgressCallback report, void* context) {
    report(context, 0);
    report(context, steps);
    ++transfers;
    if (beforeHold)
      beforeHold();
    while (hold) {
      if (report(context, steps) != 0)
        return kAborted;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return report(context, 100) != 0 ? kAborted : 0;
  }

  std::uint64_t Take(char* buffer, std::uint32_t size) {
    std::this_thread::sleep_for(delay);
    const std::lock_guard guard(m_portionsMutex);
    if (endless && m_portions.empty())
      m_portions.push_back("one line of a device that never stops\r\n");
    if (m_portions.empty())
      return 0;
    std::string& portion = m_portions.front();
    const std::size_t taken = portion.copy(buffer, size);
    portion.erase(0, taken);
    if (taken == 0 || endless) // what follows is the next poll's
      m_portions.pop_front();
    return taken;
  }

  mutable std::mutex m_portionsMutex; // guards the field below
  std::deque<std::string> m_portions;
};
