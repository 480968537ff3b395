#include "MountComponent.h"

#include "DriveLog.h"
#include "NfwMountEventMsg.h"
#include "NfwMountManager.h"
#include "ZTSMountHost.h"

namespace drive {

namespace {

const char* deviceName(int nType) {
  static const char* const NAMES[] = {"device", "database", "database medium", "SD card", "USB stick", "optical disc"};
  return nType >= 0 && nType <= nfw::MOUNT_DEVICE_OPTICAL_DISC ? NAMES[nType] : NAMES[0];
}

const char* statusName(int nStatus) {
  static const char* const NAMES[] = {"unclear", "detecting",  "unmounted", "gone",
                                      "mounted", "unreadable", "read-only", "unmounting"};
  return nStatus >= 0 && nStatus <= nfw::MOUNT_STATUS_UNMOUNTING ? NAMES[nStatus] : NAMES[0];
}

}  // namespace

int MountComponent::initializeAfterQuickBootImp() {
  return nfw::MountManager::get()->initialize() ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

// Without the kernel's table there are no events, and nothing else is amiss.
int MountComponent::startImp() {
  if (!mounthost::startWatching()) {
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "the mount table cannot be watched");
  }
  return nfw::MountManager::get()->attachListener(this) ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

int MountComponent::stopImp() {
  mounthost::stopWatching();
  return nfw::PHASE_DONE;
}

int MountComponent::shutdownImp() {
  nfw::MountManager::get()->detachListener(this);
  nfw::MountManager::get()->shutdown();
  nfw::MountManager::destroy();
  return nfw::PHASE_DONE;
}

void MountComponent::notifyMountEvent(nfw::MountEventMsg const& nEvent) {
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "%s %s is %s%s%s", deviceName(nEvent.mDeviceType), nEvent.mDrive,
         statusName(nEvent.mDeviceStatus), nEvent.mPath[0] == '\0' ? "" : " at ", nEvent.mPath);
  if (mDrive.empty() || mDrive != nEvent.mDrive) return;
  const bool lIsMounted = nEvent.mDeviceStatus == nfw::MOUNT_STATUS_MOUNTED;
  if (lIsMounted && !mIsRecording) mRecorder.beginIn(nEvent.mPath);
  if (!lIsMounted && mIsRecording) mRecorder.endIn();
  mIsRecording = lIsMounted;
}

}  // namespace drive
