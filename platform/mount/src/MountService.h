// What the parts of the mount stand-in ask of each other.
#pragma once

#include "ZTSMount.h"

namespace mountservice {

/// Told of listeners that were added, on the thread that adds them.
class Greeter {
 public:
  virtual ~Greeter() = default;
  virtual void greet(ZTSMountListener* npListener) = 0;
};

/// One at a time, null for none. When the call returns no thread is inside the one before.
void setGreeter(Greeter* npGreeter);

/// Keeps the record and tells every listener.
void tell(const ZTSMountDef::ST_MNT_MOUNT_INFO& nInfo);

/// Tells one listener only; nothing when it was removed meanwhile.
void tellReady(const ZTSMountListener* npListener);
void tell(const ZTSMountListener* npListener, const ZTSMountDef::ST_MNT_MOUNT_INFO& nInfo);

}  // namespace mountservice
