#include "Undelivered.h"

#include <algorithm>
#include <cstring>

namespace mountservice {

template <class Chosen>
void Undelivered::removeIf(Chosen nChosen) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mEvents.remove_if(nChosen);
}

void Undelivered::add(ZTSMountListener* npListener, const Info& nInfo) {
  removeIf([&](const Event& n) {
    return n.mpListener == npListener && strncmp(n.mInfo.drive, nInfo.drive, sizeof(nInfo.drive)) == 0;
  });
  const std::lock_guard<std::mutex> lLock(mMutex);
  mEvents.push_back(Event{npListener, nInfo, ++mLastNumber});
}

void Undelivered::remove(unsigned long long nNumber) {
  removeIf([nNumber](const Event& n) { return n.mNumber == nNumber; });
}

void Undelivered::forget(const ZTSMountListener* npListener) {
  removeIf([npListener](const Event& n) { return n.mpListener == npListener; });
}

bool Undelivered::has(const ZTSMountListener* npListener) const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return std::any_of(mEvents.begin(), mEvents.end(), [=](const Event& n) { return n.mpListener == npListener; });
}

bool Undelivered::isEmpty() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mEvents.empty();
}

bool Undelivered::copyFirst(Event* npEvent) const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (!mEvents.empty()) *npEvent = mEvents.front();
  return !mEvents.empty();
}

}  // namespace mountservice
