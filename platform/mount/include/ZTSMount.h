/// @file
/// The service SDK of storage-device mounting.
#pragma once

#include "ZTSMountDef.h"

/// Told of storage devices, on the SDK's thread.
class ZTSMountListener {
 public:
  virtual ~ZTSMountListener() = default;
  virtual void onNotifyReady() = 0;
  virtual void onNotifyDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo) = 0;
};

class ZTSMount {
 public:
  static ZTSMount* GetInstance();

  bool addListener(ZTSMountListener* npListener);
  bool removeListener(ZTSMountListener* npListener);

  /// 0 success, 1 not connected, other values error.
  int getDeviceInfo(int nSdkType, ZTSMountDef::ST_MNT_MOUNT_INFO* npInfo);

 private:
  ZTSMount() = default;
};
