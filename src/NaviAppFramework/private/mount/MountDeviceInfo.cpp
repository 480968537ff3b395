#include "MountDeviceInfo.h"

#include "NfwMountManager.h"

namespace nfw {
namespace {

const struct {
  int mSdkType;
  MountDeviceType mType;
} TYPES[] = {
    {1, MOUNT_DEVICE_USB_STICK},     {2, MOUNT_DEVICE_SD_CARD},
    {12, MOUNT_DEVICE_OPTICAL_DISC}, {SDK_TYPE_EXTERNAL_DATABASE, MOUNT_DEVICE_EXTERNAL_DATABASE},
    {17, MOUNT_DEVICE_DATABASE},
};

// By the SDK's port and the SDK's event. The fifth port has no number of its own, and two events are one status.
const MountPort PORTS[] = {MOUNT_PORT_OTHER,   MOUNT_PORT_USB_1,      MOUNT_PORT_USB_2,
                           MOUNT_PORT_USB_3,   MOUNT_PORT_USB_4,      MOUNT_PORT_OTHER,
                           MOUNT_PORT_SD_SLOT, MOUNT_PORT_DISC_DRIVE, MOUNT_PORT_INTERNAL};
const MountStatus STATUSES[] = {MOUNT_STATUS_DETECTING,  MOUNT_STATUS_DISCONNECTED, MOUNT_STATUS_CONNECTED,
                                MOUNT_STATUS_MOUNTED,    MOUNT_STATUS_UNREADABLE,   MOUNT_STATUS_READ_ONLY,
                                MOUNT_STATUS_UNREADABLE, MOUNT_STATUS_UNMOUNTING};

const unsigned int PORT_NUM = sizeof(PORTS) / sizeof(PORTS[0]);
const unsigned int EVENT_NUM = sizeof(STATUSES) / sizeof(STATUSES[0]);

MountDeviceType typeOf(int nSdkType) {
  for (const auto& lRow : TYPES) {
    if (lRow.mSdkType == nSdkType) return lRow.mType;
  }
  return MOUNT_DEVICE_UNKNOWN;
}

MountPort portOf(int nSdkPort) {
  const unsigned int lPort = static_cast<unsigned int>(nSdkPort);
  return lPort < PORT_NUM ? PORTS[lPort] : MOUNT_PORT_OTHER;
}

}  // namespace

bool MountManager::DeviceInfo::setSdkInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo) {
  const unsigned int lEvent = static_cast<unsigned int>(nInfo.event);
  if (lEvent >= EVENT_NUM) return false;
  mDeviceType = typeOf(nInfo.type);
  mPort = portOf(nInfo.port);
  mDeviceStatus = STATUSES[lEvent];
  copyCut(mDrive, nInfo.drive);
  copyCut(mSerialNumber, nInfo.serialNum);
  memset(mPath, 0, sizeof(mPath));
  if (mDeviceStatus >= MOUNT_STATUS_MOUNTED) copyCut(mPath, nInfo.path);
  return true;
}

}  // namespace nfw
