#include <algorithm>
#include <iterator>
#include <list>

#include "BlockDevice.h"
#include "MountService.h"
#include "MountTypes.h"
#include "ReadCheck.h"
#include "ZTSMountHost.h"

namespace mounthost {

namespace {

using ZTSMountDef::ST_MNT_MOUNT_INFO;

// What the unit reads; a medium with another one is told as unreadable.
const char* const FILE_SYSTEMS[] = {"vfat", "exfat", "ntfs", "ntfs3", "fuseblk", "msdos", "ext2",    "ext3",
                                    "ext4", "f2fs",  "xfs",  "btrfs", "iso9660", "udf",   "squashfs"};

bool isKnownFileSystem(const std::string& nType) {
  for (const char* lpType : FILE_SYSTEMS) {
    if (nType == lpType) return true;
  }
  return false;
}

}  // namespace

struct MountTableSource::State {
  /// A mount that is told of, and what was told last.
  struct Known {
    MountEntry mEntry;
    BlockDevice mDevice;
    ST_MNT_MOUNT_INFO mInfo;
    bool mIsMounted;
    ReadCheck mCheck;
  };

  explicit State(const WatchOptions& nOptions)
      : mSysRoot(nOptions.mpSysRoot),
        mMediaDirectory(std::string(nOptions.mpMediaDirectory) + "/"),
        mDatabasePoint(nOptions.mpDatabasePoint),
        mExternalDatabasePoint(nOptions.mpExternalDatabasePoint),
        mpIsReadable(nOptions.mpIsReadable != nullptr ? nOptions.mpIsReadable : &directoryIsReadable),
        mAnswerMs(nOptions.mAnswerMs) {}

  bool isMedium(const std::string& nPoint) const {
    return nPoint.rfind(mMediaDirectory, 0) == 0 && nPoint.find('/', mMediaDirectory.size()) == std::string::npos;
  }
  void classify(const MountEntry& nEntry, const BlockDevice& nDevice, ST_MNT_MOUNT_INFO* npInfo) const;
  Known recognize(const MountEntry& nEntry) const;
  int eventOf(const Known& nKnown) const;
  Known* find(const char* npDrive);
  void mount(const Known& nFound);
  void leave(Known* npKnown);
  void tell(Known* npKnown, int nEvent);

  const std::string mSysRoot;
  const std::string mMediaDirectory;
  const std::string mDatabasePoint;
  const std::string mExternalDatabasePoint;
  const ReadCheck::IsReadable mpIsReadable;
  const unsigned int mAnswerMs;
  std::list<Known> mKnown;  // in the order in which they came
};

void MountTableSource::State::classify(const MountEntry& nEntry, const BlockDevice& nDevice,
                                       ST_MNT_MOUNT_INFO* npInfo) const {
  const bool lIsDevice = nDevice.isBlock() && !nDevice.isImage();
  npInfo->type = lIsDevice ? nDevice.getType() : isMedium(nEntry.mPoint) ? SDK_USB_STICK : SDK_NOT_TOLD;
  npInfo->port = lIsDevice ? nDevice.getPort() : SDK_OTHER_PORT;
  if (nEntry.mPoint == mExternalDatabasePoint) npInfo->type = SDK_EXTERNAL_DATABASE;
  if (nEntry.mPoint != mDatabasePoint) return;
  npInfo->type = SDK_DATABASE;
  npInfo->port = SDK_INTERNAL;
}

// The drive is the kernel's name of the device, or the last name of the path where there is none.
MountTableSource::State::Known MountTableSource::State::recognize(const MountEntry& nEntry) const {
  Known lKnown{nEntry, BlockDevice(mSysRoot, nEntry), ST_MNT_MOUNT_INFO{}, true, {}};
  classify(nEntry, lKnown.mDevice, &lKnown.mInfo);
  const std::string& lPoint = nEntry.mPoint;
  putText(lKnown.mInfo.drive,
          lKnown.mDevice.isBlock() ? lKnown.mDevice.getName() : lPoint.substr(lPoint.rfind('/') + 1));
  lKnown.mDevice.fill(&lKnown.mInfo);
  return lKnown;
}

int MountTableSource::State::eventOf(const Known& nKnown) const {
  const bool lIsThere = !nKnown.mDevice.isBlock() || nKnown.mDevice.exists();
  if (!nKnown.mIsMounted) return nKnown.mDevice.isBlock() && lIsThere ? SDK_CONNECTED : SDK_DISCONNECTED;
  if (!lIsThere) return SDK_DISCONNECTED;
  if (!nKnown.mCheck.isReadable()) return SDK_READ_ERROR;
  const bool lIsKnown = !nKnown.mDevice.isBlock() || isKnownFileSystem(nKnown.mEntry.mType);
  if (!lIsKnown || nKnown.mEntry.mPoint.size() >= sizeof(nKnown.mInfo.path)) return SDK_UNKNOWN_FILE_SYSTEM;
  const bool lIsWritten = nKnown.mInfo.type == SDK_USB_STICK || nKnown.mInfo.type == SDK_SD_CARD;
  return lIsWritten && nKnown.mEntry.mIsReadOnly ? SDK_READ_ONLY : SDK_MOUNTED;
}

MountTableSource::State::Known* MountTableSource::State::find(const char* npDrive) {
  for (Known& lKnown : mKnown) {
    if (std::string(npDrive) == lKnown.mInfo.drive) return &lKnown;
  }
  return nullptr;
}

void MountTableSource::State::tell(Known* npKnown, int nEvent) {
  if (npKnown->mInfo.event == nEvent) return;
  npKnown->mInfo.event = nEvent;
  mountservice::tell(npKnown->mInfo);
}

/// A new mount, or one that still is as it was: then only its options may have changed.
void MountTableSource::State::mount(const Known& nFound) {
  Known* lpKnown = find(nFound.mInfo.drive);
  if (lpKnown != nullptr && lpKnown->mIsMounted) {
    lpKnown->mEntry.mIsReadOnly = nFound.mEntry.mIsReadOnly;
  } else {
    if (lpKnown == nullptr) lpKnown = &mKnown.emplace_back(nFound);
    *lpKnown = nFound;
    lpKnown->mCheck.begin(mpIsReadable, nFound.mEntry.mPoint, mAnswerMs);
    if (nFound.mEntry.mPoint.size() < sizeof(lpKnown->mInfo.path)) putText(lpKnown->mInfo.path, nFound.mEntry.mPoint);
  }
  tell(lpKnown, eventOf(*lpKnown));
}

void MountTableSource::State::leave(Known* npKnown) {
  npKnown->mIsMounted = false;
  std::fill(std::begin(npKnown->mInfo.path), std::end(npKnown->mInfo.path), '\0');
  tell(npKnown, eventOf(*npKnown));
}

MountTableSource::MountTableSource(const WatchOptions& nOptions) : mpState(new State(nOptions)) {}
MountTableSource::~MountTableSource() = default;

// What has left is told first. Of several mounts of one device the first counts.
void MountTableSource::update(const std::string& nTable) {
  std::list<State::Known> lFound;
  for (const MountEntry& lEntry : parseMountTable(nTable)) {
    const State::Known lKnown = mpState->recognize(lEntry);
    const auto lIsSameDrive = [&](const State::Known& n) { return std::string(n.mInfo.drive) == lKnown.mInfo.drive; };
    if (lKnown.mInfo.type == SDK_NOT_TOLD || std::any_of(lFound.begin(), lFound.end(), lIsSameDrive)) continue;
    lFound.push_back(lKnown);
  }
  for (State::Known& lKnown : mpState->mKnown) {
    const auto lIsSameMount = [&](const State::Known& n) { return n.mEntry.isSame(lKnown.mEntry); };
    if (lKnown.mIsMounted && std::none_of(lFound.begin(), lFound.end(), lIsSameMount)) mpState->leave(&lKnown);
  }
  for (const State::Known& lKnown : lFound) mpState->mount(lKnown);
  checkDevices();
}

void MountTableSource::checkDevices() {
  for (State::Known& lKnown : mpState->mKnown) mpState->tell(&lKnown, mpState->eventOf(lKnown));
  mpState->mKnown.remove_if([](const State::Known& n) { return !n.mIsMounted && n.mInfo.event == SDK_DISCONNECTED; });
}

bool MountTableSource::hasDevices() const {
  return std::any_of(mpState->mKnown.begin(), mpState->mKnown.end(), [](const State::Known& n) {
    if (n.mIsMounted && n.mCheck.isUnderWay()) return true;
    return n.mDevice.isBlock() && n.mInfo.event != SDK_DISCONNECTED && n.mInfo.type != SDK_DATABASE;
  });
}

void MountTableSource::tellAll(const ZTSMountListener* npListener) {
  for (const State::Known& lKnown : mpState->mKnown) mountservice::tell(npListener, lKnown.mInfo);
}

}  // namespace mounthost
