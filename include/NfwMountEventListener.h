/// @file
/// Who is told of storage devices.
#pragma once

#include "NfwExport.h"
#include "NfwMountEventMsg.h"

namespace nfw {

/// Called on the mount manager's thread, one event at a time, with no lock held. A listener is not owned; it may attach
/// and detach itself and others inside the call, and must not wait there for another service. A device may be gone
/// before its event arrives: what is done at its path can fail.
class NFW_API MountEventListener {
 public:
  virtual ~MountEventListener() = default;
  virtual void notifyMountEvent(nfw::MountEventMsg const& nEvent) = 0;
};

}  // namespace nfw
