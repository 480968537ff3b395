#include "ZTSMount.h"

#include <atomic>
#include <mutex>

#include "FullQueues.h"
#include "MountService.h"
#include "MountTypes.h"
#include "SdkListeners.h"
#include "Undelivered.h"
#include "ZTSMountHost.h"
#include "utl/Map.h"

namespace {

using ZTSMountDef::ST_MNT_MOUNT_INFO;

const int NOT_CONNECTED = 1;
const int FAILURE = -1;

struct Device {
  int mResult = NOT_CONNECTED;
  ST_MNT_MOUNT_INFO mInfo{};
};

struct Service {
  SdkListeners<ZTSMountListener> mListeners;
  std::mutex mMutex;  // guards mDevices
  utl::Map<int, Device> mDevices{8, true};
  std::mutex mGreeterMutex;  // guards mpGreeter, and is held while it is called
  mountservice::Greeter* mpGreeter = nullptr;
  mountservice::Undelivered mUndelivered;
  std::atomic<bool> mIsTellingAgain{false};
};

// Never destroyed: a watching thread may feed while the process ends.
Service& service() {
  static Service& lService = *new Service;
  return lService;
}

/// False when the listener lost it to a full queue.
bool isTold(ZTSMountListener& nListener, const ST_MNT_MOUNT_INFO& nInfo) {
  const unsigned int lMet = utl::FullQueues::met();
  nListener.onNotifyDeviceInfo(nInfo);
  return utl::FullQueues::met() == lMet;
}

/// What a listener has not got yet goes first.
void deliver(ZTSMountListener& nListener, const ST_MNT_MOUNT_INFO& nInfo) {
  const bool lMustWait = service().mUndelivered.has(&nListener);
  if (lMustWait || !isTold(nListener, nInfo)) service().mUndelivered.add(&nListener, nInfo);
  if (lMustWait) mounthost::tellUndelivered();
}

}  // namespace

ZTSMount* ZTSMount::GetInstance() {
  static ZTSMount* const lpMount = new ZTSMount;
  return lpMount;
}

bool ZTSMount::addListener(ZTSMountListener* npListener) {
  if (!service().mListeners.add(npListener)) return false;
  const std::lock_guard<std::mutex> lLock(service().mGreeterMutex);
  if (service().mpGreeter != nullptr) service().mpGreeter->greet(npListener);
  return true;
}
bool ZTSMount::removeListener(ZTSMountListener* npListener) {
  const bool lIsFound = service().mListeners.remove(npListener);
  service().mUndelivered.forget(npListener);
  return lIsFound;
}

int ZTSMount::getDeviceInfo(int nSdkType, ST_MNT_MOUNT_INFO* npInfo) {
  if (npInfo == nullptr) return FAILURE;
  std::lock_guard<std::mutex> lLock(service().mMutex);
  const Device* const lpDevice = service().mDevices.find(nSdkType);
  if (lpDevice == nullptr) return NOT_CONNECTED;
  *npInfo = lpDevice->mInfo;
  return lpDevice->mResult;
}

namespace mountservice {

void setGreeter(Greeter* npGreeter) {
  const std::lock_guard<std::mutex> lLock(service().mGreeterMutex);
  service().mpGreeter = npGreeter;
}

void tell(const ST_MNT_MOUNT_INFO& nInfo) {
  mounthost::setDeviceInfo(nInfo.type, nInfo.event == SDK_DISCONNECTED ? NOT_CONNECTED : 0, nInfo);
  service().mListeners.each(0, [&](ZTSMountListener& nListener) { deliver(nListener, nInfo); });
}

void tellReady(const ZTSMountListener* npListener) {
  service().mListeners.each(0, [&](ZTSMountListener& nListener) {
    if (&nListener == npListener) nListener.onNotifyReady();
  });
}

void tell(const ZTSMountListener* npListener, const ST_MNT_MOUNT_INFO& nInfo) {
  service().mListeners.each(0, [&](ZTSMountListener& nListener) {
    if (&nListener == npListener) deliver(nListener, nInfo);
  });
}

}  // namespace mountservice

namespace mounthost {

void feedReady() {
  service().mListeners.each(0, [](ZTSMountListener& nListener) { nListener.onNotifyReady(); });
}

void feedDeviceInfo(ST_MNT_MOUNT_INFO const& nInfo) {
  setDeviceInfo(nInfo.type, 0, nInfo);
  service().mListeners.each(0, [&](ZTSMountListener& nListener) { deliver(nListener, nInfo); });
}

bool tellUndelivered() {
  mountservice::Undelivered& lUndelivered = service().mUndelivered;
  mountservice::Undelivered::Event lEvent;
  if (service().mIsTellingAgain.exchange(true)) return false;  // another thread does it, or a callback asks
  bool lIsTold = true;
  while (lIsTold && lUndelivered.copyFirst(&lEvent)) {
    service().mListeners.each(0, [&](ZTSMountListener& nListener) {
      if (&nListener == lEvent.mpListener) lIsTold = isTold(nListener, lEvent.mInfo);
    });
    if (lIsTold) lUndelivered.remove(lEvent.mNumber);  // also when the listener has left
  }
  service().mIsTellingAgain = false;
  return lUndelivered.isEmpty();
}

void setDeviceInfo(int nSdkType, int nResult, ST_MNT_MOUNT_INFO const& nInfo) {
  std::lock_guard<std::mutex> lLock(service().mMutex);
  service().mDevices.remove(nSdkType);
  service().mDevices.insert(nSdkType, Device{nResult, nInfo});
}

void clearDeviceInfo() {
  std::lock_guard<std::mutex> lLock(service().mMutex);
  service().mDevices.clear();
}

}  // namespace mounthost
