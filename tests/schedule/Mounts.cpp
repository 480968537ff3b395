// Storms of mount events, and listeners that come and go.
#include <array>
#include <atomic>
#include <cstring>
#include <map>

#include "NfwMountManager.h"
#include "Scenarios.h"
#include "ZTSMountHost.h"

namespace {

class Hearer : public nfw::MountEventListener {
 public:
  void notifyMountEvent(nfw::MountEventMsg const& nEvent) override {
    mPlace.called("a mount listener");
    mSerials[nEvent.mDrive] = nEvent.mSerialNumber;
    mOnCall();
  }
  void come() {
    mPlace.attach([this] { return mSerials.clear(), nfw::MountManager::get()->attachListener(this); });
  }
  void go() {
    mPlace.detach([this] { nfw::MountManager::get()->detachListener(this); });
  }
  Place mPlace;
  std::map<std::string, std::string> mSerials;  // of the drives, as told last
  std::function<void()> mOnCall = [] {};
};

void feed(const std::string& nDrive, unsigned int nNumber) {
  ZTSMountDef::ST_MNT_MOUNT_INFO lInfo = {};
  lInfo.type = 1;
  lInfo.port = 2;
  lInfo.event = static_cast<int>(1 + schedule::pick(4));
  std::strcpy(lInfo.drive, nDrive.c_str());
  std::strcpy(lInfo.path, ("/media/" + nDrive).c_str());
  std::strcpy(lInfo.serialNum, std::to_string(nNumber).c_str());
  mounthost::feedDeviceInfo(lInfo);
}

}  // namespace

void mounts() {
  const unsigned int STORM = 1 + schedule::pick(30);
  nfw::MountManager::initializeMaxListenerNum(3);
  std::array<Hearer, 3> lHearers;
  nfw::MountManager& lManager = *nfw::MountManager::get();
  schedule::require(lManager.initialize(), "the manager starts");
  const auto lFeed = [STORM](const char* npDrive) {
    for (unsigned int i = 0; i < STORM; ++i) feed(npDrive, i);
  };
  changeUnder({[&] { lFeed("sda1"); }, [&] { lFeed("sdb1"); }}, lHearers, 5);
  for (Hearer& lEach : lHearers) lEach.mOnCall = [] {};
  for (int i = 0; i < 100 && !mounthost::tellUndelivered(); ++i) schedule::sleepMs(10);
  schedule::sleepMs(100);
  const schedule::Within lWithin("the end of the manager", 30000);
  for (const Hearer& lEach : lHearers) {
    for (const char* const lpDrive : {"sda1", "sdb1"}) {
      const auto lFound = lEach.mSerials.find(lpDrive);
      const bool lIsNewest = lFound != lEach.mSerials.end() && lFound->second == std::to_string(STORM - 1);
      schedule::require(!lEach.mPlace.isPresent() || lIsNewest, "who is attached knows the newest event of each drive");
    }
  }
  if (schedule::flip()) lManager.shutdown();
  nfw::MountManager::destroy();
}
