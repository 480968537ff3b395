/// @file
/// What a storage device's event tells.
#pragma once

#include "NfwExport.h"
#include "utl/Msg.h"

namespace nfw {

/// What kind of device it is.
enum MountDeviceType {
  MOUNT_DEVICE_UNKNOWN = 0,
  MOUNT_DEVICE_DATABASE = 1,           ///< the unit's own database partition
  MOUNT_DEVICE_EXTERNAL_DATABASE = 2,  ///< a medium with a database
  MOUNT_DEVICE_SD_CARD = 3,
  MOUNT_DEVICE_USB_STICK = 4,
  MOUNT_DEVICE_OPTICAL_DISC = 5,
};

/// Where it is plugged in.
enum MountPort {
  MOUNT_PORT_OTHER = 0,
  MOUNT_PORT_USB_1 = 1,
  MOUNT_PORT_USB_2 = 2,
  MOUNT_PORT_USB_3 = 3,
  MOUNT_PORT_USB_4 = 4,
  MOUNT_PORT_SD_SLOT = 5,
  MOUNT_PORT_DISC_DRIVE = 6,
  MOUNT_PORT_INTERNAL = 7,
};

/// What state it is in. From MOUNT_STATUS_MOUNTED on it has a path.
enum MountStatus {
  MOUNT_STATUS_UNCLEAR = 0,
  MOUNT_STATUS_DETECTING = 1,
  MOUNT_STATUS_CONNECTED = 2,  ///< there, and not mounted
  MOUNT_STATUS_DISCONNECTED = 3,
  MOUNT_STATUS_MOUNTED = 4,
  MOUNT_STATUS_UNREADABLE = 5,
  MOUNT_STATUS_READ_ONLY = 6,  ///< mounted, and nothing can be written
  MOUNT_STATUS_UNMOUNTING = 7,
};

/// A device as it is known. Texts are terminated.
struct MountDevice {
  int mDeviceId = -1;     ///< 0 and up, of one drive as long as the service lives
  int mDeviceType = 0;    ///< MountDeviceType
  int mPort = 0;          ///< MountPort
  int mDeviceStatus = 0;  ///< MountStatus
  char mDrive[64] = {};   ///< tells devices apart
  char mPath[64] = {};    ///< where it is mounted; empty below MOUNT_STATUS_MOUNTED
  char mSerialNumber[256] = {};
};

/// One event: the device as it was when it happened.
class NFW_API MountEventMsg : public utl::Msg, public MountDevice {
 public:
  MountEventMsg();
  explicit MountEventMsg(const MountDevice& nDevice);

  bool storeDataTo(utl::MsgDataBroker& nBroker) const override;
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override;
};

}  // namespace nfw
