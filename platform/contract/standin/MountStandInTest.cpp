// What the mount stand-in makes of mount tables and of sysfs, on a fixture tree.
#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "Notes.h"
#include "PlatformSeams.h"
#include "SharedThread.h"
#include "Split.h"
#include "TempTree.h"
#include "ZTSMount.h"
#include "ZTSMountHost.h"

namespace {

using std::string;
using Told = std::vector<string>;

/// Notes "type port event drive path" of each device, and "ready".
class Recorder : public ZTSMountListener, public nfwtest::Notes {
 public:
  void onNotifyReady() override { add("ready"); }
  void onNotifyDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo) override {
    EXPECT_EQ(nInfo.event == 1 ? 1 : 0, ZTSMount::GetInstance()->getDeviceInfo(nInfo.type, &mLast)) << "known already";
    add(std::to_string(nInfo.type) + " " + std::to_string(nInfo.port) + " " + std::to_string(nInfo.event) + " " +
        nInfo.drive + " " + nInfo.path);
  }

  /// Of the last device, as sysfs has them.
  string names() const {
    char lIds[32];
    snprintf(lIds, sizeof lIds, "%x:%x", mLast.vendorId, mLast.productId);
    return string(mLast.manufacturer) + ", " + mLast.productName + ", " + mLast.serialNum + ", " + lIds;
  }

 private:
  ZTSMountDef::ST_MNT_MOUNT_INFO mLast{};
};

std::atomic<bool> gIsReadable{true};
std::mutex gSilence;  // held while a medium does not answer

class MountTables : public testing::Test {
 protected:
  MountTables() {
    device("8:1", "usb1/1-2/1-2:1.0/6:0:0:0/block/sda/sda1");
    attributes("usb1", "idVendor=1d6b|idProduct=2|manufacturer=the hub");
    attributes("usb1/1-2", "idVendor=0781|idProduct=5581|manufacturer=Maker|product=Stick 3|serial=4C53|devpath=2.1");
    attributes("usb1/1-2/1-2:1.0/6:0:0:0", "vendor=nearer|model=but not it");
    device("8:17", "usb1/1-7/block/sdb/sdb1");
    attributes("usb1/1-7", "idVendor=1|devpath=7");
    device("179:1", "mmc0/mmc0:a/block/mmcblk0/mmcblk0p1");
    attributes("mmc0/mmc0:a", "cid=0|type=SD|name=SU08G|serial=0x12|manfid=0x000003|oemid=0x5344");
    device("179:9", "mmc1/mmc1:1/block/mmcblk1/mmcblk1p9");
    attributes("mmc1/mmc1:1", "cid=0|type=MMC");
    device("11:0", "ata2/host1/1:0:0:0/block/sr0");
    attributes("ata2/host1/1:0:0:0", "vendor=Discs   |model=DVD ");
    device("253:0", "virtual/block/dm-0");
    device("7:0", "virtual/block/loop0");
    mTree.write("sys/devices/virtual/block/loop0/loop/backing_file", "/tmp/image\n");
    mTree.link("../../devices/usb1/1-7/block/sdb/sdb1", "sys/class/block/sdb1");
    gIsReadable = true;
    mOptions.mpSysRoot = mSysRoot.c_str();
    mOptions.mpIsReadable = [](const char*) {
      const std::lock_guard<std::mutex> lSilence(gSilence);
      return gIsReadable.load();
    };
    mpSource.reset(new mounthost::MountTableSource(mOptions));
    EXPECT_TRUE(ZTSMount::GetInstance()->addListener(&mRecorder));
  }
  ~MountTables() override {
    ZTSMount::GetInstance()->removeListener(&mRecorder);
    mounthost::clearDeviceInfo();
  }

  void device(const string& nNumber, const string& nPath) const {
    mTree.write("sys/devices/" + nPath + "/dev", nNumber);
    mTree.link("../../devices/" + nPath, "sys/dev/block/" + nNumber);
  }
  void attributes(const string& nPath, const string& nValues) const {
    for (const string& lEach : nfwtest::split(nValues, '|')) {
      const Told lParts = nfwtest::split(lEach, '=');
      mTree.write("sys/devices/" + nPath + "/" + lParts[0], lParts[1] + "\n");
    }
  }
  void pull(const string& nPath) const { std::filesystem::remove_all(mTree.path("sys/devices/" + nPath)); }
  Told told(const string& nTable) {
    mpSource->update(nTable);
    return mRecorder.take();
  }

  const nfwtest::TempTree mTree;
  const string mSysRoot = mTree.path("sys");
  mounthost::WatchOptions mOptions;
  Recorder mRecorder;
  std::unique_ptr<mounthost::MountTableSource> mpSource;
};

const string STICK = "36 25 8:1 / /media/a\\040stick rw,nosuid shared:1 master:2 - vfat /dev/sda1 rw\n";
const string LONG_POINT = "/media/" + string(57, 'x');

// A medium that does not answer is left alone, told as unreadable, and told again when it answers.
TEST_F(MountTables, WaitForNoMediumLongerThanTheLimit) {
  mOptions.mAnswerMs = 20;
  mpSource.reset(new mounthost::MountTableSource(mOptions));
  std::unique_lock<std::mutex> lSilence(gSilence);
  EXPECT_EQ((Told{"1 2 6 sda1 /media/a stick"}), told(STICK));
  EXPECT_TRUE(mpSource->hasDevices());
  mpSource->checkDevices();
  EXPECT_EQ(Told(), mRecorder.take());
  lSilence.unlock();
  EXPECT_TRUE(nfwtest::eventually([&] { return mRecorder.count() > 0; }, [&] { mpSource->checkDevices(); }));
  EXPECT_EQ((Told{"1 2 3 sda1 /media/a stick"}), mRecorder.take());
}

TEST_F(MountTables, AreToldByTypePortAndEventAndNamedAsInSysfs) {
  const struct {
    string mLine;
    string mTold, mNames = {};
  } ROWS[] = {
      {STICK, "1 2 3 sda1 /media/a stick", "Maker, Stick 3, 4C53, 781:5581"},
      {"36 25 8:1 / /x ro - vfat /dev/sda1 rw\n", "1 2 5 sda1 /x"},
      {"36 25 8:1 / /x rw - vfat /dev/sda1 rw,ro\n", "1 2 5 sda1 /x"},
      {"36 25 8:1 / /x rw,row - vfat /dev/sda1 rw\n", "1 2 3 sda1 /x"},
      {"36 25 8:1 / /x rw - hfs /dev/sda1 rw,errors=ro\n", "1 2 4 sda1 /x"},
      {"36 25 8:1 / " + LONG_POINT + " rw - vfat /dev/sda1 rw\n", "1 2 4 sda1 "},
      {"36 25 8:17 / /x rw - ext4 /dev/sdb1 rw\n", "1 5 3 sdb1 /x", ", , , 1:0"},
      {"36 25 0:41 / /x rw - btrfs /dev/sdb1 rw\n", "1 5 3 sdb1 /x"},
      {"36 25 179:1 / /x rw - exfat /dev/mmcblk0p1 rw\n", "2 6 3 mmcblk0p1 /x", "0x000003, SU08G, 0x12, 3:5344"},
      {"36 25 11:0 / /x ro - iso9660 /dev/sr0 ro\n", "12 7 3 sr0 /x", "Discs, DVD, , 0:0"},
      {"36 25 7:0 / /media/image rw - vfat /dev/loop0 rw\n", "1 5 3 loop0 /media/image"},
      {"36 25 0:50 / /media/memory rw - tmpfs none rw\n", "1 5 3 memory /media/memory", ", , , 0:0"},
      {"36 25 179:9 / /mnt/database ro - ext4 /dev/mmcblk1p9 ro\n", "17 8 3 mmcblk1p9 /mnt/database"},
      {"36 25 0:50 / /media/a\rb\\134\\011 rw - tmpfs  rw\n", "1 5 3 a\rb\\\t /media/a\rb\\\t"},
      {"36 25 0:50 / /mnt/database rw - tmpfs none rw\n", "17 8 3 database /mnt/database"},
      {"36 25 179:1 / /mnt/externaldb ro - ext4 /dev/x ro\n", "14 6 3 mmcblk0p1 /mnt/externaldb"},
      {"36 25 179:9 / /media/x rw - ext4 /dev/mmcblk1p9 rw\n", ""},
      {"36 25 253:0 / /media/x rw - ext4 /dev/dm-0 rw\n", ""},
      {"36 25 7:0 / /snap/x ro - squashfs /dev/loop0 ro\n", ""},
      {"36 25 0:50 / /media/a/b rw - tmpfs none rw\n", ""},
      {"36 25 0:50 / /media rw - tmpfs none rw\n", ""},
      {"36 25 0:5 / /proc rw - proc proc rw\n", ""},
      {"36 25 8:1 / /x rw vfat /dev/sda1 rw\n", ""},
      {"36 25 8:1\n\n-\n", ""},
  };
  for (const auto& lRow : ROWS) {
    SCOPED_TRACE(lRow.mLine);
    mpSource.reset(new mounthost::MountTableSource(mOptions));
    EXPECT_EQ(lRow.mTold.empty() ? Told() : Told{lRow.mTold}, told(lRow.mLine));
    EXPECT_TRUE(lRow.mNames.empty() || lRow.mNames == mRecorder.names()) << mRecorder.names();
  }
}

TEST_F(MountTables, AreComparedWithTheOneBefore) {
  const string lCard = "40 25 179:1 / /card rw - vfat /dev/mmcblk0p1 rw\n";
  EXPECT_EQ(Told{"1 2 3 sda1 /media/a stick"}, told(STICK));
  EXPECT_EQ(Told(), told(STICK));
  // Of two mounts of a device the first of the table counts.
  EXPECT_EQ(Told{"2 6 3 mmcblk0p1 /card"}, told(STICK + "37 25 8:1 / /second rw - vfat /dev/sda1 rw\n" + lCard));
  // The same number at another place, or with another id: an unmount and a mount.
  EXPECT_EQ((Told{"1 2 2 sda1 ", "1 2 3 sda1 /other"}), told("36 25 8:1 / /other rw - vfat /dev/sda1 rw\n" + lCard));
  EXPECT_EQ((Told{"1 2 2 sda1 ", "1 2 3 sda1 /other"}), told("99 25 8:1 / /other rw - vfat /dev/sda1 rw\n" + lCard));
  EXPECT_EQ(Told{"1 2 5 sda1 /other"}, told("99 25 8:1 / /other ro - vfat /dev/sda1 rw\n" + lCard));
  // What has left is told before what has come.
  EXPECT_EQ((Told{"1 2 2 sda1 ", "2 6 2 mmcblk0p1 ", "12 7 3 sr0 /d"}), told("50 25 11:0 / /d ro - udf /dev/sr0 ro\n"));
}

TEST_F(MountTables, TellWhatWasPulledOut) {
  ZTSMountDef::ST_MNT_MOUNT_INFO lInfo{};
  EXPECT_EQ(1, ZTSMount::GetInstance()->getDeviceInfo(1, &lInfo));
  EXPECT_EQ(-1, ZTSMount::GetInstance()->getDeviceInfo(1, nullptr));
  told(STICK);
  EXPECT_EQ(0, ZTSMount::GetInstance()->getDeviceInfo(1, &lInfo));
  EXPECT_TRUE(mpSource->hasDevices());
  pull("usb1/1-2");
  mpSource->checkDevices();
  EXPECT_EQ(Told{"1 2 1 sda1 /media/a stick"}, mRecorder.take());
  EXPECT_EQ(1, ZTSMount::GetInstance()->getDeviceInfo(1, &lInfo));
  EXPECT_EQ(Told(), told(STICK));  // the mount stays until somebody takes it away
  EXPECT_EQ(Told(), told(""));
  EXPECT_FALSE(mpSource->hasDevices());

  told("40 25 179:1 / /card rw - vfat /dev/mmcblk0p1 rw\n");
  EXPECT_EQ(Told{"2 6 2 mmcblk0p1 "}, told(""));  // unmounted first, then pulled out
  pull("mmc0");
  mpSource->checkDevices();
  EXPECT_EQ(Told{"2 6 1 mmcblk0p1 "}, mRecorder.take());
  mpSource->checkDevices();
  EXPECT_EQ(Told(), mRecorder.take());

  told("41 25 0:50 / /media/memory rw - tmpfs none rw\n");
  EXPECT_EQ(Told{"1 5 1 memory "}, told(""));
}

TEST_F(MountTables, TellOfUnreadableMedia) {
  gIsReadable = false;
  EXPECT_EQ(Told{"1 2 6 sda1 /media/a stick"}, told(STICK));
  gIsReadable = true;
  EXPECT_EQ(Told(), told(STICK));  // judged when it is mounted
  EXPECT_EQ(Told{"1 2 2 sda1 "}, told(""));
  EXPECT_EQ(Told{"1 2 3 sda1 /media/a stick"}, told(STICK));
}

TEST_F(MountTables, AreWatchedAndToldToLateListeners) {
  mTree.write("mountinfo", STICK);
  const string lTable = mTree.path("mountinfo");
  mOptions.mpMountTable = lTable.c_str();
  {
    const seams::Failing lFailing(seams::THREAD_START);
    EXPECT_FALSE(mounthost::startWatching(mOptions));
  }
  EXPECT_TRUE(mounthost::startWatching(mOptions));
  EXPECT_FALSE(mounthost::startWatching(mOptions));
  Recorder lLate;
  for (Recorder* const lpEach : {&mRecorder, &lLate}) {
    EXPECT_TRUE(lpEach == &mRecorder || ZTSMount::GetInstance()->addListener(lpEach));
    EXPECT_TRUE(lpEach->waitFor(2));
    EXPECT_EQ((Told{"ready", "1 2 3 sda1 /media/a stick"}), lpEach->take());
  }
  EXPECT_TRUE(ZTSMount::GetInstance()->removeListener(&lLate));
  mounthost::stopWatching();
  mounthost::stopWatching();
  EXPECT_EQ(Told(), mRecorder.take());
  mOptions.mpMountTable = "/nowhere";
  EXPECT_FALSE(mounthost::startWatching(mOptions));
}

}  // namespace
