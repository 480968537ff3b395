// The fields of mount records, in the order in which messages carry them.
#pragma once

#include "NfwMountEventMsg.h"
#include "ZTSMountDef.h"

namespace nfw {

template <class Self, class Visit>
bool eachMountField(Self& nDevice, Visit nVisit) {
  return nVisit(nDevice.mDeviceId) && nVisit(nDevice.mDeviceType) && nVisit(nDevice.mPort) &&
         nVisit(nDevice.mDeviceStatus) && nVisit(nDevice.mDrive) && nVisit(nDevice.mPath) &&
         nVisit(nDevice.mSerialNumber);
}

template <class Self, class Visit>
bool eachSdkMountField(Self& nInfo, Visit nVisit) {
  return nVisit(nInfo.type) && nVisit(nInfo.port) && nVisit(nInfo.event) && nVisit(nInfo.drive) && nVisit(nInfo.path) &&
         nVisit(nInfo.manufacturer) && nVisit(nInfo.productName) && nVisit(nInfo.serialNum) && nVisit(nInfo.vendorId) &&
         nVisit(nInfo.productId);
}

}  // namespace nfw
