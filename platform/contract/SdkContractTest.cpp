#include "ParseNotes.h"
#include "ZTSDeadReckoning.h"
#include "ZTSMount.h"
#include "gtest/gtest.h"

namespace {

struct NmeaListener : GpsNmeaListener {
  void notifyReceiveNmeaSentence(char const*, unsigned int) override {}
};

struct ParseListener : nfwtest::ParseNotes {
  void note(const char*, const void*) override {}
};

struct MountListener : ZTSMountListener {
  void onNotifyReady() override {}
  void onNotifyDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const&) override {}
};

TEST(SdkContract, EachServiceTakesAndForgetsListenersAlsoTwice) {
  NmeaListener lNmea;
  ParseListener lParse;
  ZTSDeadReckoningListener lSensors;
  MountListener lMount;
  Gps* const lpGps = Gps::GetInstance();
  EXPECT_EQ(lpGps, Gps::GetInstance());
  for (const GeodeticSystem lSystem : {WGS_84_GPS, TOKYO_GPS, WGS_84_GPS, TOKYO_GPS}) {
    EXPECT_TRUE(lpGps->registerGpsNmeaListener(&lNmea, lSystem));
    EXPECT_TRUE(lpGps->registerGpsParseNmeaListener(&lParse, lSystem));
    EXPECT_TRUE(ZTSDeadReckoning::GetInstance()->addListener(&lSensors));
    EXPECT_TRUE(ZTSMount::GetInstance()->addListener(&lMount));
    for (int i = 0; i < 2; ++i) {  // the second time none is registered
      lpGps->unRegisterGpsNmeaListener(&lNmea);
      lpGps->unRegisterGpsParseNmeaListener(&lParse);
      ZTSDeadReckoning::GetInstance()->removeListener(&lSensors);
      ZTSMount::GetInstance()->removeListener(&lMount);
    }
  }
  ZTSMountDef::ST_MNT_MOUNT_INFO lInfo{};
  for (int lType = 1; lType <= 17; ++lType) {
    const bool lIsKnown = ZTSMount::GetInstance()->getDeviceInfo(lType, &lInfo) == 0;
    EXPECT_TRUE(!lIsKnown || lInfo.type == lType) << lType;
  }
}

}  // namespace
