// What every channel of this folder is. *Sources* move bytes and files (`sim/`); *decorators* stand around one of them
// and add what every channel needs: locking, injected faults. `ChannelFactory.h` builds the whole chain.
#pragma once

#include "frame/OndDeviceClient.h"

namespace host {

// The contract's interface with an owner: the destructor stands behind the contract's slots and is the host's alone.
class Channel : public COndDeviceComm_0 {
public:
  Channel() = default;
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  virtual ~Channel() = default;
};

} // namespace host
