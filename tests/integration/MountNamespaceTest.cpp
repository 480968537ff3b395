// Real mounts, in a mount namespace of this process' own, reach a listener of the library.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "MountNamespace.h"
#include "NfwMountManager.h"
#include "Replays.h"
#include "TempTree.h"
#include "ZTSMountHost.h"

namespace {

using std::string;

/// Notes "status drive path".
class Listener : public nfw::MountEventListener {
 public:
  void notifyMountEvent(nfw::MountEventMsg const& nEvent) override {
    EXPECT_EQ(nfw::MOUNT_DEVICE_USB_STICK, nEvent.mDeviceType);
    mNotes.add(std::to_string(nEvent.mDeviceStatus) + " " + nEvent.mDrive + " " + nEvent.mPath);
  }

  nfwtest::Notes mNotes;
};

TEST(MountNamespace, TellsOfRealMounts) {
  const string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  const nfwtest::TempTree lTree;
  const string lMedia = lTree.path("media"), lPoint = lMedia + "/stick";
  std::filesystem::create_directories(lPoint);
  mounthost::WatchOptions lOptions;
  lOptions.mpMediaDirectory = lMedia.c_str();
  Listener lListener;
  nfw::MountManager::initializeMaxListenerNum(1);
  nfw::MountManager* const lpManager = nfw::MountManager::get();
  EXPECT_TRUE(lpManager->initialize() && lpManager->attachListener(&lListener));
  EXPECT_TRUE(mounthost::startWatching(lOptions));
  std::vector<string> lExpected;
  const auto lExpect = [&](const char* npEvent, bool nHasPath) {
    lExpected.push_back(npEvent + (nHasPath ? lPoint : ""));
    EXPECT_TRUE(lListener.mNotes.waitFor(lExpected.size())) << npEvent;
  };
  ASSERT_EQ(0, mount("none", lPoint.c_str(), "tmpfs", 0, nullptr)) << strerror(errno);
  lExpect("4 stick ", true);
  EXPECT_EQ(0, mount("none", lPoint.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr)) << strerror(errno);
  lExpect("6 stick ", true);
  EXPECT_EQ(0, umount(lPoint.c_str()));
  lExpect("3 stick ", false);
  mounthost::stopWatching();
  EXPECT_TRUE(lpManager->detachListener(&lListener));
  nfw::MountManager::destroy();
  EXPECT_EQ(lExpected, lListener.mNotes.all());
}

}  // namespace
