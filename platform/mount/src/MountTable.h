// The kernel's mount table, as /proc/self/mountinfo shows it.
#pragma once

#include <string>
#include <vector>

/// 36 35 8:1 / /media/stick rw,nosuid shared:1 - vfat /dev/sda1 rw,errors=remount-ro
struct MountEntry {
  std::string mId;
  std::string mDevice;  // "8:1"; "0:n" where there is no block device
  std::string mPoint;
  std::string mType;  // of the file system
  std::string mSource;
  bool mIsReadOnly = false;

  /// Ids and numbers are used again: only all of it together tells that a mount is still the same.
  bool isSame(const MountEntry& nOther) const;
};

/// Lines that are no entries are left out.
std::vector<MountEntry> parseMountTable(const std::string& nText);
