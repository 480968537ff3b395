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

TEST(SdkContract, TheReceiverTakesAndForgetsListeners) {
  NmeaListener lNmea;
  ParseListener lParse;
  Gps* const lpGps = Gps::GetInstance();
  ASSERT_NE(nullptr, lpGps);
  EXPECT_EQ(lpGps, Gps::GetInstance());
  for (GeodeticSystem lSystem : {WGS_84_GPS, TOKYO_GPS}) {
    for (int lRound = 0; lRound < 2; ++lRound) {
      EXPECT_TRUE(lpGps->registerGpsNmeaListener(&lNmea, lSystem));
      EXPECT_TRUE(lpGps->registerGpsParseNmeaListener(&lParse, lSystem));
      lpGps->unRegisterGpsNmeaListener(&lNmea);
      lpGps->unRegisterGpsParseNmeaListener(&lParse);
    }
  }
  lpGps->unRegisterGpsNmeaListener(&lNmea);  // one that is not registered
}

TEST(SdkContract, TheSensorsTakeAndForgetListeners) {
  ZTSDeadReckoningListener lListener;
  ASSERT_NE(nullptr, ZTSDeadReckoning::GetInstance());
  EXPECT_TRUE(ZTSDeadReckoning::GetInstance()->addListener(&lListener));
  ZTSDeadReckoning::GetInstance()->removeListener(&lListener);
  ZTSDeadReckoning::GetInstance()->removeListener(&lListener);
}

TEST(SdkContract, TheMountServiceTakesListenersAndAnswers) {
  MountListener lListener;
  ASSERT_NE(nullptr, ZTSMount::GetInstance());
  EXPECT_TRUE(ZTSMount::GetInstance()->addListener(&lListener));
  ZTSMountDef::ST_MNT_MOUNT_INFO lInfo{};
  for (int lType = 1; lType <= 17; ++lType) {
    const bool lIsKnown = ZTSMount::GetInstance()->getDeviceInfo(lType, &lInfo) == 0;
    EXPECT_TRUE(!lIsKnown || lInfo.type == lType) << lType;
  }
  ZTSMount::GetInstance()->removeListener(&lListener);
}

}  // namespace
