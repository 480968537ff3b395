// A block device as the kernel describes it in sysfs.
#pragma once

#include <cstddef>
#include <string>

#include "MountTable.h"
#include "ZTSMountDef.h"

/// What a mount stands on. Everything is read from below a root, normally "/sys".
class BlockDevice {
 public:
  /// What carries it, and the attributes that name it there.
  struct Carrier;

  BlockDevice(const std::string& nSysRoot, const MountEntry& nEntry);

  bool isBlock() const { return !mLink.empty(); }       ///< false for what only lives in memory or on a network
  bool isImage() const { return isCalled("loop"); }     ///< a file that stands for a device
  bool exists() const;                                  ///< it may have been pulled out meanwhile
  const std::string& getName() const { return mName; }  ///< the kernel's: "sda1"

  /// The SDK's type and port by what carries it, 0 where that is not told of.
  int getType() const;
  int getPort() const;
  /// Manufacturer, product, serial number and ids, as far as they are there.
  void fill(ZTSMountDef::ST_MNT_MOUNT_INFO* npInfo) const;

 private:
  bool findCarrier(const Carrier& nCarrier, std::string nDirectory, const std::string& nTop);
  bool isCalled(const char* npPrefix) const { return mName.rfind(npPrefix, 0) == 0; }
  std::string attribute(const char* npName) const;

  std::string mLink;  // of the device's directory; empty: no block device
  std::string mName;
  std::string mOwner;  // the carrier's directory
  const Carrier* mpCarrier = nullptr;
};

/// Copies a text into a record's field; what does not fit is cut.
template <size_t N>
void putText(char (&npField)[N], const std::string& nText) {
  nText.substr(0, N - 1).copy(npField, N - 1);
}
