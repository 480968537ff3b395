// The storage devices that have been told of.
#pragma once

#include "NfwMountManager.h"
#include "NfwThreadSafety.h"
#include "utl/Array.h"

namespace nfw {

/// The id tried after this one; ids are never negative.
int nextDeviceId(int nDeviceId);

/// Any thread may read; one thread changes it.
class MountDeviceList {
 public:
  static const unsigned int DEFAULT_DEVICE_NUM = 32;  // room at first, not a limit

  /// Replaces the record of the drive, whose id the new one takes over. False when the drive is not there.
  bool replace(MountManager::DeviceInfo* npInfo) NFW_EXCLUDES(mSync);
  /// Gives the record an id and adds it. False without memory.
  bool add(MountManager::DeviceInfo* npInfo) NFW_EXCLUDES(mSync);

  unsigned int size() NFW_EXCLUDES(mSync);
  bool copy(int nDeviceId, MountManager::DeviceInfo* npInfo) NFW_EXCLUDES(mSync);          ///< false for an unknown id
  bool copyAt(unsigned int nIndex, MountManager::DeviceInfo* npInfo) NFW_EXCLUDES(mSync);  ///< false behind the end

 private:
  MountManager::DeviceInfo* findDrive(const char* npDrive) NFW_REQUIRES(mSync);
  MountManager::DeviceInfo* findDevice(int nDeviceId) NFW_REQUIRES(mSync);
  int issueDeviceId() NFW_REQUIRES(mSync);

  utl::Array<MountManager::DeviceInfo> mDevices NFW_GUARDED_BY(mSync){DEFAULT_DEVICE_NUM, true};
  ZTSync mSync{"nfw::MountDeviceList"};
};

}  // namespace nfw
