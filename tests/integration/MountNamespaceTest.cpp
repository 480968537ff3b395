// Real mounts, in a mount namespace of this process' own, reach a listener of the library.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

#include "MountNamespace.h"
#include "NfwMountManager.h"
#include "TempTree.h"
#include "ZTSMountHost.h"

namespace {

using std::string;

/// The last line that a command prints; empty when it fails.
string run(const string& nCommand) {
  FILE* const lpPipe = popen(("(" + nCommand + ") 2>/dev/null").c_str(), "r");
  if (lpPipe == nullptr) return "";
  string lOutput;
  for (int lByte; (lByte = fgetc(lpPipe)) != EOF;) lOutput += static_cast<char>(lByte);
  if (pclose(lpPipe) != 0) return "";
  if (!lOutput.empty()) lOutput.pop_back();
  return lOutput.substr(lOutput.rfind('\n') + 1);
}

class Listener : public nfw::MountEventListener {
 public:
  void notifyMountEvent(nfw::MountEventMsg const& nEvent) override {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mEvents.push_back(nEvent);
    mHasNew.notify_all();
  }
  /// The drive's next event, of status 0 when there is none.
  nfw::MountEventMsg next(const string& nDrive) {
    std::unique_lock<std::mutex> lLock(mMutex);
    for (;; ++mSeen) {
      if (!mHasNew.wait_for(lLock, std::chrono::seconds(20), [&] { return mEvents.size() > mSeen; })) return {};
      if (nDrive == mEvents[mSeen].mDrive) return mEvents[mSeen++];
    }
  }

 private:
  std::mutex mMutex;
  std::condition_variable mHasNew;
  std::vector<nfw::MountEventMsg> mEvents;
  size_t mSeen = 0;
};

class MountNamespace : public testing::Test {
 protected:
  void SetUp() override {
    const string lRefusal = nfwtest::enterMountNamespace();
    if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
    std::filesystem::create_directories(mTree.path("media/stick"));
    const string lMedia = mTree.path("media");
    mounthost::WatchOptions lOptions;
    lOptions.mpMediaDirectory = lMedia.c_str();
    nfw::MountManager::initializeMaxListenerNum(1);
    nfw::MountManager* const lpManager = nfw::MountManager::get();
    EXPECT_TRUE(lpManager->initialize());
    EXPECT_TRUE(lpManager->attachListener(&mListener));
    EXPECT_TRUE(mounthost::startWatching(lOptions));
  }
  void TearDown() override {
    mounthost::stopWatching();
    nfw::MountManager::get()->detachListener(&mListener);
    nfw::MountManager::get()->shutdown();
    nfw::MountManager::destroy();
    umount2(mPoint.c_str(), MNT_DETACH);
  }
  void expect(const string& nDrive, int nStatus) {
    const nfw::MountEventMsg lEvent = mListener.next(nDrive);
    EXPECT_EQ(nStatus, lEvent.mDeviceStatus);
    EXPECT_EQ(nStatus >= nfw::MOUNT_STATUS_MOUNTED ? mPoint : "", lEvent.mPath);
    EXPECT_EQ(nfw::MOUNT_DEVICE_USB_STICK, lEvent.mDeviceType);
    EXPECT_TRUE(mDeviceId == -1 || mDeviceId == lEvent.mDeviceId);
    mDeviceId = lEvent.mDeviceId;
  }

  const nfwtest::TempTree mTree;
  const string mPoint = mTree.path("media/stick");
  Listener mListener;
  int mDeviceId = -1;
};

TEST_F(MountNamespace, TellsOfMemory) {
  ASSERT_EQ(0, mount("none", mPoint.c_str(), "tmpfs", 0, nullptr)) << strerror(errno);
  expect("stick", nfw::MOUNT_STATUS_MOUNTED);
  EXPECT_EQ(0, mount("none", mPoint.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr)) << strerror(errno);
  expect("stick", nfw::MOUNT_STATUS_READ_ONLY);
  EXPECT_EQ(0, umount(mPoint.c_str()));
  expect("stick", nfw::MOUNT_STATUS_DISCONNECTED);
  EXPECT_EQ(0, mount("none", mPoint.c_str(), "tmpfs", 0, nullptr)) << strerror(errno);
  expect("stick", nfw::MOUNT_STATUS_MOUNTED);
}

TEST_F(MountNamespace, TellsOfAnImage) {
  const string lImage = mTree.path("image");
  run("truncate -s 16M " + lImage);
  const string lDevice = run("losetup -f --show " + lImage);
  if (lDevice.empty()) GTEST_SKIP() << "the kernel refuses a loop device";
  const string lDrive = lDevice.substr(lDevice.rfind('/') + 1);
  const char* lpType = nullptr;
  for (const char* lpTried : {"vfat", "ext4"}) {
    if (lpType != nullptr || run("mkfs." + string(lpTried) + " " + lImage + " && echo ok").empty()) continue;
    if (mount(lDevice.c_str(), mPoint.c_str(), lpTried, 0, nullptr) == 0) lpType = lpTried;
  }
  if (lpType == nullptr) {
    run("losetup -d " + lDevice);
    GTEST_SKIP() << "neither vfat nor ext4 can be made and mounted here";
  }
  expect(lDrive, nfw::MOUNT_STATUS_MOUNTED);
  EXPECT_EQ(0, umount(mPoint.c_str()));
  expect(lDrive, nfw::MOUNT_STATUS_CONNECTED);
  EXPECT_EQ(0, mount(lDevice.c_str(), mPoint.c_str(), lpType, MS_RDONLY, nullptr));
  expect(lDrive, nfw::MOUNT_STATUS_READ_ONLY);
  EXPECT_EQ(0, umount(mPoint.c_str()));
  expect(lDrive, nfw::MOUNT_STATUS_CONNECTED);
  run("losetup -d " + lDevice);
  expect(lDrive, nfw::MOUNT_STATUS_DISCONNECTED);  // without a change of the table
}

}  // namespace
