// What listeners of the mount service could not take.
#pragma once

#include <list>
#include <mutex>

#include "ZTSMount.h"

namespace mountservice {

/// Events that wait to be told again, in their order: of a drive the newest only, which says all that still matters.
/// Any thread may call.
class Undelivered {
 public:
  using Info = ZTSMountDef::ST_MNT_MOUNT_INFO;
  struct Event {
    ZTSMountListener* mpListener = nullptr;
    Info mInfo{};
    unsigned long long mNumber = 0;
  };

  void add(ZTSMountListener* npListener, const Info& nInfo);
  void remove(unsigned long long nNumber);
  void forget(const ZTSMountListener* npListener);
  bool has(const ZTSMountListener* npListener) const;
  bool isEmpty() const;

  /// The first one. It stays until it is removed: nothing newer of its drive goes before it meanwhile.
  bool copyFirst(Event* npEvent) const;

 private:
  template <class Chosen>
  void removeIf(Chosen nChosen);

  mutable std::mutex mMutex;  // guards what follows
  std::list<Event> mEvents;
  unsigned long long mLastNumber = 0;
};

}  // namespace mountservice
