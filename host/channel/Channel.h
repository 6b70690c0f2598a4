// What every channel of this folder is. *Sources* move bytes and files (`sim/`, `stream/`); *decorators* stand around
// one of them and add what every channel needs: locking, injected faults. `ChannelFactory.h` builds the whole chain.
#pragma once

#include "frame/contract/OndDeviceClient.h"

#include <functional>
#include <string>

namespace host {

// What becomes of a line that is opened again by itself when it is lost.
enum class LineEvent { kLost, kOpenAgain };
// `reason` tells users why it was lost. Throws nothing.
using LineWatcher = std::function<void(LineEvent, const std::string& reason)>;

// The contract's interface with an owner: the destructor stands behind the contract's slots and is the host's alone.
class Channel : public COndDeviceComm_0 {
public:
  Channel() = default;
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  virtual ~Channel() = default;

  // A channel may still be connecting when it is made; so long it is closed. [any thread]
  virtual bool IsConnecting() { return false; }
  // Waits until that has come to an end; the source bounds the time. 0 when the channel is open, or the code whose text
  // tells why it is closed. [any thread; a window's only when the channel is not connecting]
  virtual std::int32_t WaitUntilOpen() { return 0; }
  // Waits until everything that was passed to `Transmit` has left, as long as something moves. 0, or a code whose text
  // tells why some of it never did, refused calls included. [any thread but a window's]
  virtual std::int32_t WaitUntilSent() { return 0; }
  // At the end of the last run: 0, or a code whose text tells what the run has left undone. [any thread]
  virtual std::int32_t Finish() { return 0; }
  // Whether the channel is closed for good, and everything that had come in has been read. [any thread]
  virtual bool HasEnded() { return false; }
  // What a user wants to know when a run begins, to repeat it exactly; empty: nothing. [any thread]
  virtual std::string Notice() { return {}; }
  // Whether it is open or was: what a device says before it hangs up can still be read. [any thread]
  virtual bool HasBeenOpen() { return true; }
  // From now on until the channel's end, tells the watcher what becomes of the line, on any thread, which it must not
  // hold up. One watcher at a time.
  virtual void WatchLine(LineWatcher) {}
};

} // namespace host
