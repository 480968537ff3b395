#include "MountDeviceList.h"

#include <cstring>

#include "Watched.h"

namespace nfw {
namespace {

/// Ids are unique in the process, whatever manager issues them.
struct DeviceIds {
  ZTSync mSync{"MountManager_DeviceId"};
  int mLastIssued NFW_GUARDED_BY(mSync) = -1;

  static DeviceIds& get() {
    static DeviceIds* const lpIds = new DeviceIds;  // never destroyed
    return *lpIds;
  }
};

}  // namespace

int nextDeviceId(int nDeviceId) {
  const int lNext = static_cast<int>(static_cast<unsigned int>(nDeviceId) + 1u);
  return lNext < 0 ? 0 : lNext;
}

bool MountDeviceList::replace(MountManager::DeviceInfo* npInfo) {
  const WatchedLock lLock(mSync);
  MountManager::DeviceInfo* const lpDevice = findDrive(npInfo->mDrive);
  if (lpDevice == nullptr) return false;
  npInfo->mDeviceId = lpDevice->mDeviceId;
  *lpDevice = *npInfo;
  return true;
}

bool MountDeviceList::add(MountManager::DeviceInfo* npInfo) {
  const WatchedLock lLock(mSync);
  npInfo->mDeviceId = issueDeviceId();
  return mDevices.add(*npInfo);
}

unsigned int MountDeviceList::size() {
  const WatchedLock lLock(mSync);
  return mDevices.size();
}

bool MountDeviceList::copy(int nDeviceId, MountManager::DeviceInfo* npInfo) {
  const WatchedLock lLock(mSync);
  const MountManager::DeviceInfo* const lpDevice = findDevice(nDeviceId);
  if (lpDevice != nullptr) *npInfo = *lpDevice;
  return lpDevice != nullptr;
}

bool MountDeviceList::copyAt(unsigned int nIndex, MountManager::DeviceInfo* npInfo) {
  const WatchedLock lLock(mSync);
  if (nIndex >= mDevices.size()) return false;
  *npInfo = mDevices[nIndex];
  return true;
}

MountManager::DeviceInfo* MountDeviceList::findDrive(const char* npDrive) {
  for (unsigned int i = mDevices.size(); i > 0; --i) {
    if (strcmp(mDevices[i - 1].mDrive, npDrive) == 0) return &mDevices[i - 1];
  }
  return nullptr;
}

MountManager::DeviceInfo* MountDeviceList::findDevice(int nDeviceId) {
  for (unsigned int i = mDevices.size(); i > 0; --i) {
    if (mDevices[i - 1].mDeviceId == nDeviceId) return &mDevices[i - 1];
  }
  return nullptr;
}

int MountDeviceList::issueDeviceId() {
  DeviceIds& lIds = DeviceIds::get();
  const WatchedLock lLock(lIds.mSync);
  do {
    lIds.mLastIssued = nextDeviceId(lIds.mLastIssued);
  } while (findDevice(lIds.mLastIssued) != nullptr);
  return lIds.mLastIssued;
}

}  // namespace nfw
