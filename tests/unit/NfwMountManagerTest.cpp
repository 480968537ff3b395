#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "MountDeviceList.h"
#include "MountMsg.h"
#include "MountNamespace.h"
#include "NfwMountManager.h"
#include "NfwThreadMsgProfilerManager.h"
#include "NfwThreadMsgSizeCalculator.h"
#include "Positioning.h"
#include "StuckCall.h"
#include "TempTree.h"
#include "ZTSMountHost.h"
#include "utl/Event.h"

namespace {

using nfw::MountEventMsg;
using nfw::MountManager;
using std::string;
using ZTSMountDef::ST_MNT_MOUNT_INFO;
using Texts = std::vector<string>;

template <size_t N>
void put(char (&npField)[N], const string& nText) {
  npField[nText.copy(npField, N - 1)] = '\0';
  if (nText.size() >= N) npField[N - 1] = nText[N - 1];  // full to its last byte, without a terminator
}

ST_MNT_MOUNT_INFO sdkInfo(const string& nDrive, int nEvent, int nType = 1) {
  ST_MNT_MOUNT_INFO lInfo{};
  lInfo.type = nType;
  lInfo.port = 2;
  lInfo.event = nEvent;
  put(lInfo.drive, nDrive);
  put(lInfo.path, "/media/" + nDrive);
  return lInfo;
}

/// Notes "name:drive status" of each event among those of other listeners.
class Listener : public nfw::MountEventListener {
 public:
  Listener(nfwtest::Notes& nNotes, string nName) : mNotes(nNotes), mName(std::move(nName)) {}
  void notifyMountEvent(MountEventMsg const& nEvent) override {
    if (mOnEvent) mOnEvent(nEvent);
    mIds[nEvent.mDrive] = nEvent.mDeviceId;
    mNotes.add(mName + ":" + nEvent.mDrive + " " + std::to_string(nEvent.mDeviceStatus));
  }

  std::function<void(const MountEventMsg&)> mOnEvent;
  std::map<string, int> mIds;  // of the drives

 private:
  nfwtest::Notes& mNotes;
  const string mName;
};

class MountManagerTest : public testing::Test {
 protected:
  MountManagerTest() {
    MountManager::initializeMaxListenerNum(3);
    mpManager = MountManager::get();
  }
  ~MountManagerTest() override {
    MountManager::destroy();
    mounthost::clearDeviceInfo();
  }
  void start() {
    EXPECT_TRUE(mpManager->initialize());
    EXPECT_TRUE(mpManager->attachListener(&mA));
  }
  static void feed(const string& nDrive, int nEvent, int nType = 1) {
    mounthost::feedDeviceInfo(sdkInfo(nDrive, nEvent, nType));
  }
  /// What listeners were told since the last call, once this is among it.
  Texts takeTo(const string& nText) {
    Texts lTexts;
    const auto isThere = [&] {
      lTexts = mNotes.all();
      return std::count(lTexts.begin(), lTexts.end(), nText) > 0;
    };
    EXPECT_TRUE(nfwtest::eventually(isThere)) << nText;
    mNotes.clear();
    return lTexts;
  }
  /// The same, up to an event of a drive of its own that is told to `mA`.
  Texts told() {
    feed("end", 1);
    Texts lTexts = takeTo("A:end 3");
    const auto isOfEnd = [](const string& n) { return n.find(":end ") != string::npos; };
    lTexts.erase(std::remove_if(lTexts.begin(), lTexts.end(), isOfEnd), lTexts.end());
    return lTexts;
  }
  int idOf(const string& nDrive) const { return mA.mIds.count(nDrive) != 0 ? mA.mIds.at(nDrive) : -1; }

  seams::CapturedLog mLog;
  nfwtest::Notes mNotes;
  Listener mA{mNotes, "A"}, mB{mNotes, "B"}, mC{mNotes, "C"};
  MountManager* mpManager;
};

TEST(MountDeviceInfo, ComesFromTheSdkByThreeTables) {
  const auto from = [](int nType, int nPort, int nEvent) {
    ST_MNT_MOUNT_INFO lSdkInfo = sdkInfo("d", nEvent, nType);
    lSdkInfo.port = nPort;
    MountManager::DeviceInfo lInfo;
    lInfo.mPort = 77;
    return std::make_pair(lInfo.setSdkInfo(lSdkInfo), lInfo);
  };
  const int TYPES[] = {0, 4, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5, 0, 2, 0, 0, 1, 0};
  for (int i = 0; i <= 18; ++i) EXPECT_EQ(TYPES[i], from(i, 1, 0).second.mDeviceType) << i;
  const int PORTS[] = {0, 1, 2, 3, 4, 0, 5, 6, 7, 0};
  for (int i = 0; i <= 9; ++i) EXPECT_EQ(PORTS[i], from(1, i, 0).second.mPort) << i;
  const int STATUSES[] = {1, 3, 2, 4, 5, 6, 5, 7};
  for (int i = 0; i <= 7; ++i) {
    EXPECT_TRUE(from(1, 1, i).first);
    EXPECT_EQ(STATUSES[i], from(1, 1, i).second.mDeviceStatus) << i;
    EXPECT_STREQ(STATUSES[i] >= 4 ? "/media/d" : "", from(1, 1, i).second.mPath) << i;
  }
  for (const int lOther : {-1, INT_MIN, INT_MAX}) {
    EXPECT_EQ(0, from(lOther, 1, 0).second.mDeviceType);
    EXPECT_EQ(0, from(1, lOther, 0).second.mPort);
  }
  for (const int lEvent : {8, -1, INT_MIN, INT_MAX}) {
    EXPECT_FALSE(from(1, 1, lEvent).first);
    EXPECT_EQ(77, from(1, 1, lEvent).second.mPort);  // untouched
  }
  EXPECT_EQ(-1, from(1, 1, 0).second.mDeviceId);
}

TEST(MountDeviceInfo, CutsTextsWithoutTerminator) {
  ST_MNT_MOUNT_INFO lSdkInfo = sdkInfo(string(70, 'd'), 3);
  put(lSdkInfo.path, string(70, 'p'));
  put(lSdkInfo.serialNum, string(300, 's'));
  MountManager::DeviceInfo lInfo;
  EXPECT_TRUE(lInfo.setSdkInfo(lSdkInfo));
  EXPECT_EQ(string(63, 'd'), lInfo.mDrive);
  EXPECT_EQ(string(63, 'p'), lInfo.mPath);
  EXPECT_EQ(string(255, 's'), lInfo.mSerialNumber);
  EXPECT_EQ(0, nfw::nextDeviceId(-1));
  EXPECT_EQ(0, nfw::nextDeviceId(INT_MAX));
}

TEST(MountEventMsg, HasItsFieldsInOrder) {
  MountEventMsg lMsg;
  nfw::ThreadMsgSizeCalculator lCalculator;
  EXPECT_TRUE(lMsg.restoreFrom(lCalculator));
  EXPECT_EQ(16u + 64 + 64 + 256, lCalculator.getSize());
  EXPECT_EQ(static_cast<int>(0x80000000u), lMsg.getMsgId());
  EXPECT_EQ(static_cast<int>(0x80000C06u), nfw::MOUNT_SDK_DEVICE_INFO);
  nfw::ThreadMsgProfilerManager::profiling(nfw::THREAD_MSG_MOUNT_MANAGER);
  EXPECT_EQ(12u + 4 * 64 + 256 + 8, nfw::ThreadMsgProfilerManager::getMaxMsgDataSize(nfw::THREAD_MSG_MOUNT_MANAGER));
}

TEST_F(MountManagerTest, KeepsTheIdOfADrive) {
  start();
  int lId = -1;
  mA.mOnEvent = [&](const MountEventMsg& nEvent) {
    if (strcmp(nEvent.mDrive, "a") != 0) return;
    EXPECT_TRUE(lId == -1 || lId == nEvent.mDeviceId);
    lId = nEvent.mDeviceId;
    EXPECT_EQ(4, nEvent.mDeviceType);
    EXPECT_EQ(2, nEvent.mPort);
    EXPECT_STREQ(nEvent.mDeviceStatus == 4 ? "/media/a" : "", nEvent.mPath);
  };
  feed("a", 3);
  feed("b", 3);
  feed("a", 1);
  feed("x", 8);      // what the SDK does not have,
  feed("y", 3, 13);  // and what is not told of, reaches nobody
  EXPECT_EQ((Texts{"A:a 4", "A:b 4", "A:a 3"}), told());
  EXPECT_EQ(3, mpManager->getDeviceStatus(lId));
  EXPECT_EQ(4, mpManager->getDeviceStatus(idOf("b")));
  EXPECT_NE(lId, idOf("b"));
  MountManager::DeviceInfo lInfo;
  EXPECT_FALSE(mpManager->getDeviceInfo(lId, nullptr));
  EXPECT_FALSE(mpManager->getDeviceInfo(-1, &lInfo));
  EXPECT_FALSE(mpManager->getDeviceInfo(INT_MAX, &lInfo));
  EXPECT_EQ(0, mpManager->getDeviceStatus(INT_MAX));
}

TEST_F(MountManagerTest, ListsMoreDevicesThanItReserves) {
  const string lWarning = "NfwMountManager.cpp::updateDeviceInfoList(): DEFAULT_DEVICE_NUM over";
  start();
  std::set<int> lIds;
  mA.mOnEvent = [&](const MountEventMsg& nEvent) { lIds.insert(nEvent.mDeviceId); };
  for (int i = 0; i < 33; ++i) {
    EXPECT_EQ(0u, mLog.count(lWarning));
    feed("d" + std::to_string(i), 3);
    takeTo("A:d" + std::to_string(i) + " 4");
  }
  EXPECT_EQ(1u, mLog.count(lWarning));
  EXPECT_EQ(2, mLog.lines().back().mLevel);
  EXPECT_EQ(33u, lIds.size());
  EXPECT_TRUE(mpManager->attachListener(&mB));  // told of all of them
  Texts lTold = takeTo("B:d32 4");
  EXPECT_EQ(33u, lTold.size());
  EXPECT_EQ("B:d0 4", lTold[0]);
  const int lLast = *lIds.rbegin();
  MountManager::destroy();  // ids go on
  mpManager = MountManager::get();
  start();
  feed("new", 3);
  takeTo("A:new 4");
  EXPECT_EQ(lLast + 1, idOf("new"));
}

TEST_F(MountManagerTest, IsToldAgainWhatItsQueueHadNoRoomFor) {
  start();
  utl::Event lMayGoOn{false};
  mA.mOnEvent = [&](const MountEventMsg&) { EXPECT_TRUE(lMayGoOn.waitToOn(20000)); };
  Texts lExpected;
  for (int i = 0; i < 200; ++i) {
    feed("d" + std::to_string(i), 3);
    if (i != 150) lExpected.push_back("A:d" + std::to_string(i) + " 4");
  }
  EXPECT_TRUE(mLog.has("MountManager::onNotifyDeviceInfo(): Can't post thread"));
  feed("d150", 1);  // instead of what it was told in vain
  lExpected.push_back("A:d150 3");
  EXPECT_FALSE(mounthost::tellUndelivered());
  lMayGoOn.on();
  EXPECT_TRUE(nfwtest::eventually([] { return mounthost::tellUndelivered(); }));
  EXPECT_EQ(lExpected, takeTo("A:d150 3"));
}

TEST_F(MountManagerTest, TellsALateListenerEachDeviceAndTheNewestLast) {
  start();
  feed("a", 3);
  feed("b", 3);
  told();
  // Inside a callback everything is queued in a known order.
  mA.mOnEvent = [&](const MountEventMsg& nEvent) {
    if (strcmp(nEvent.mDrive, "go") != 0) return;
    EXPECT_TRUE(mpManager->attachListener(&mB));
    feed("a", 1);
  };
  feed("go", 3);
  EXPECT_EQ((Texts{"A:go 4", "B:a 4", "B:b 4", "B:end 3", "B:go 4", "B:a 3", "A:a 3"}), takeTo("A:a 3"));
  // An event that was queued before the listener was attached replaces the older state.
  mA.mOnEvent = [&](const MountEventMsg& nEvent) {
    if (strcmp(nEvent.mDrive, "go") != 0) return;
    feed("a", 3);
    EXPECT_TRUE(mpManager->attachListener(&mC));
  };
  feed("go", 3);
  EXPECT_EQ((Texts{"B:go 4", "A:go 4", "C:a 4", "B:a 4", "A:a 4", "C:b 4", "C:end 3", "C:go 4"}), takeTo("C:go 4"));
}

TEST_F(MountManagerTest, CallsLastAttachedFirstWhoeverLeaves) {
  start();
  Listener lD(mNotes, "D");
  for (Listener* const lpListener : {static_cast<Listener*>(nullptr), &mA, &mB, &mC}) {
    EXPECT_TRUE(mpManager->attachListener(lpListener));
  }
  EXPECT_FALSE(mpManager->attachListener(&lD));  // one more than may be
  EXPECT_TRUE(mpManager->detachListener(&lD) && mpManager->detachListener(nullptr));
  feed("a", 3);
  EXPECT_EQ((Texts{"C:a 4", "B:a 4", "A:a 4"}), told());
  EXPECT_TRUE(mpManager->detachListener(&mB));
  // What is queued for one that leaves is not delivered, to others it is.
  mA.mOnEvent = [&](const MountEventMsg& nEvent) {
    if (strcmp(nEvent.mDrive, "a") != 0) return;
    EXPECT_TRUE(mpManager->detachListener(&mC) && mpManager->attachListener(&mC));
    EXPECT_TRUE(mpManager->attachListener(&mB) && mpManager->detachListener(&mB));
    feed("b", 1);
  };
  feed("a", 1);
  EXPECT_EQ((Texts{"C:a 3", "A:a 3", "C:a 3", "C:end 3", "C:b 3", "A:b 3"}), takeTo("A:b 3"));
}

TEST_F(MountManagerTest, LogsWhatTheSdkTells) {
  start();
  ST_MNT_MOUNT_INFO lInfo = sdkInfo(string(64, 'd'), 3, 13);
  put(lInfo.manufacturer, "Maker");
  put(lInfo.productName, string(64, 'n'));
  put(lInfo.serialNum, string(256, 's'));
  lInfo.vendorId = 4294967295u;
  lInfo.productId = 7;
  mLog.clear();
  mpManager->onNotifyReady();
  mpManager->onNotifyDeviceInfo(lInfo);
  const auto lLines = mLog.lines();
  ASSERT_EQ(2u, lLines.size());
  EXPECT_EQ(3, lLines[0].mLevel);
  EXPECT_EQ(3, lLines[1].mLevel);
  EXPECT_EQ("MountManager::onNotifyDeviceInfo(): Type=13 Port=2 Event=3 Drive=" + string(63, 'd') + " Path=/media/" +
                string(56, 'd'),
            lLines[0].mText);
  EXPECT_EQ(string(36, ' ') + "Manufacturer=Maker ProductName=" + string(63, 'n') + " SerialNum=" + string(255, 's') +
                " VenderID=4294967295 ProductID=7",
            lLines[1].mText);
}

TEST_F(MountManagerTest, LogsWhatFails) {
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(mpManager->initialize());
  }
  EXPECT_FALSE(mpManager->attachListener(&mA));  // not running
  EXPECT_FALSE(mpManager->detachListener(&mA));
  start();
  feed("a", 3);
  told();
  mA.mOnEvent = [&](const MountEventMsg&) {
    const seams::Failing lFailing(seams::POST);
    mpManager->attachListener(&mB);
  };
  feed("a", 1);
  takeTo("A:a 3");
  {
    const seams::Failing lFailing(seams::POST);
    mpManager->onNotifyReady();
    feed("a", 3);
    EXPECT_FALSE(mpManager->attachListener(&mC));
  }
  EXPECT_EQ((Texts{"Thread Start[nfw::MountManager_Thread]", "MountManager::attachListener(): Can't send thread",
                   "MountManager::detachListener(): Can't send thread",
                   "MountManager::attachListenerInternal(): Can't post thread",
                   "MountManager::attachListenerInternal(): Can't post thread",
                   "MountManager::onNotifyReady(): Can't post thread",
                   "MountManager::onNotifyDeviceInfo(): Can't post thread",
                   "MountManager::attachListener(): Can't send thread"}),
            nfwtest::errors(mLog));
}

TEST_F(MountManagerTest, EndsForGood) {
  start();
  EXPECT_TRUE(mpManager->initialize());
  EXPECT_TRUE(mpManager->attachListener(&mB));
  for (int i = 0; i < 50; ++i) feed("a", 3);
  mpManager->shutdown();  // what was told before is delivered
  EXPECT_EQ(100u, takeTo("A:a 4").size());
  EXPECT_EQ("MountManager::shutdown(): MountEventListener remain: Count=2", mLog.lines().back().mText);
  EXPECT_EQ(2, mLog.lines().back().mLevel);
  EXPECT_FALSE(mpManager->initialize());
  mLog.clear();
  feed("a", 1);  // nobody listens
  EXPECT_EQ(0u, mLog.lines().size());
  EXPECT_EQ(4, mpManager->getDeviceStatus(idOf("a")));
}

TEST_F(MountManagerTest, IsLeftBehindWholeWhenItIsStuckInAListener) {
  nfwtest::StuckCall lStuck;
  mB.mOnEvent = [&lStuck](const MountEventMsg&) { lStuck.enter(); };
  start();
  EXPECT_TRUE(mpManager->attachListener(&mB));
  feed("a", 3), feed("a", 1);
  lStuck.awaitEntry();
  {
    const seams::Failing lNoTime(seams::THREAD_STOP);
    mpManager->shutdown();
    MountManager::destroy();
    EXPECT_EQ(1u, lNoTime.hits()) << "waited for once";
  }
  EXPECT_EQ(1u, mLog.count("Thread Stop Timeout [nfw::MountManager_Thread]"));
  EXPECT_NE(mpManager, MountManager::get());
  mpManager = MountManager::get();
  start();
  EXPECT_TRUE(lStuck.leave());
  EXPECT_EQ((Texts{"B:a 4"}), told()) << "A is not called any more, and B no second time";
}

// In a mount namespace of this process' own.
TEST_F(MountManagerTest, TellsOfRealMounts) {
  const string lRefusal = nfwtest::enterMountNamespace();
  if (!lRefusal.empty()) GTEST_SKIP() << "the kernel refuses a mount namespace: " << lRefusal;
  const nfwtest::TempTree lTree;
  const string lMedia = lTree.path("media"), lPoint = lMedia + "/stick";
  std::filesystem::create_directories(lPoint);
  mounthost::WatchOptions lOptions;
  lOptions.mpMediaDirectory = lMedia.c_str();
  start();
  mA.mOnEvent = [&](const MountEventMsg& nEvent) {
    EXPECT_EQ(nfw::MOUNT_DEVICE_USB_STICK, nEvent.mDeviceType);
    EXPECT_EQ(nEvent.mDeviceStatus == 3 ? "" : lPoint, nEvent.mPath);
  };
  EXPECT_TRUE(mounthost::startWatching(lOptions));
  ASSERT_EQ(0, mount("none", lPoint.c_str(), "tmpfs", 0, nullptr)) << strerror(errno);
  takeTo("A:stick 4");
  EXPECT_EQ(0, mount("none", lPoint.c_str(), "tmpfs", MS_REMOUNT | MS_RDONLY, nullptr)) << strerror(errno);
  takeTo("A:stick 6");
  EXPECT_EQ(0, umount(lPoint.c_str()));
  EXPECT_EQ(Texts{"A:stick 3"}, takeTo("A:stick 3"));
  mounthost::stopWatching();
}

TEST_F(MountManagerTest, AsksTheSdkForTheExternalDatabase) {
  EXPECT_EQ(3, mpManager->getExternalDbStatus());  // never told of
  // The SDK's result, type and event, and the status that comes of it.
  const int ROWS[][4] = {{0, 14, 3, 4}, {1, 14, 3, 3}, {0, 14, 2, 0}, {0, 1, 3, 0}, {-1, 14, 3, 0}, {2, 14, 3, 0}};
  for (const auto& [lResult, lType, lEvent, lStatus] : ROWS) {
    mounthost::setDeviceInfo(14, lResult, sdkInfo("db", lEvent, lType));
    EXPECT_EQ(lStatus, mpManager->getExternalDbStatus());
  }
}

}  // namespace
