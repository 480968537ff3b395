/// @file
/// Records of the mount SDK.
#pragma once

namespace ZTSMountDef {

struct ST_MNT_MOUNT_INFO {
  int type;
  int port;
  int event;
  char drive[64];
  char path[64];
  char manufacturer[64];
  char productName[64];
  char serialNum[256];
  unsigned int vendorId;
  unsigned int productId;
};

}  // namespace ZTSMountDef
