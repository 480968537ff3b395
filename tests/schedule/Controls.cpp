// A playback of two files under one's hands, while two threads turn at it.
#include <atomic>

#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogger.h"
#include "Scenarios.h"

namespace {

using nfw::Logger;
const unsigned int RECORDS = 12, STEP_MS = 10, LENGTH_MS = (RECORDS - 1) * STEP_MS;

std::atomic<unsigned int> gTarget{0};  // of the seek under way, or the last one

class Hearer : public nfw::LogPlayListener {
 public:
  void receiveLogPlayData(int /*nLogTypeId*/, const unsigned char* npData, unsigned int /*nSize*/) override {
    schedule::outward("a play listener");
    schedule::note("hears " + std::to_string(*npData));
    const unsigned int lOffset = *npData * STEP_MS;
    schedule::require(Logger::get()->getPlayPosition().mPositionMs >= lOffset, "no record comes before its time");
    schedule::require(lOffset >= mFloor, "nothing of before a seek is heard behind it");
    mOrder.see(*npData);
    if (schedule::pick(12) == 0) Logger::get()->pausePlay();
    if (schedule::pick(12) == 0) Logger::get()->resumePlay();
  }
  void jump() {
    mOrder.begin();
    mFloor = gTarget;
  }
  bool hasHeard(unsigned int nLast) const {
    return mOrder.last() == static_cast<int>(nLast) || nLast * STEP_MS < mFloor;
  }

 private:
  Ascending mOrder{"records are heard"};
  unsigned int mFloor = 0;
};

class Follower : public nfw::LogPlayer {
 public:
  void notifyPlayStart() override { mIsEnded = false; }
  void notifyPlayStop() override {}
  void notifyPlayEnd(int /*nReason*/) override {
    schedule::outward("a player");
    schedule::require(!mIsEnded, "the end is told once, and again only behind a seek");
    mIsWhole = mHearers[0].hasHeard(RECORDS - 2) && mHearers[1].hasHeard(RECORDS - 1);
    mIsEnded = true;
  }
  void notifyPlaySeek() override {
    schedule::outward("a player");
    mIsEnded = false;
    for (Hearer& lHearer : mHearers) lHearer.jump();
  }
  Hearer mHearers[2];
  std::atomic<bool> mIsEnded{false};
  bool mIsWhole = false;
};

}  // namespace

void controls() {
  startLogs();
  std::string lFiles[2];
  for (unsigned int i = 0; i < RECORDS; ++i) {
    lFiles[i / 6] += nfwtest::logRecord(1 + static_cast<int>(i % 2), i * STEP_MS, std::string(1, static_cast<char>(i)));
  }
  writeFile("one", lFiles[0]);
  writeFile("two", lFiles[1]);
  Logger& lLogger = *Logger::get();
  Follower lFollower;
  schedule::require(lLogger.attachPlayer(&lFollower), "a player comes");
  for (int i = 0; i < 2; ++i) lLogger.attachPlayListener(1 + i, &lFollower.mHearers[i]);
  const char* const PATHS[] = {"one", "two"};
  schedule::require(lLogger.startPlay(PATHS, 2), "a playback begins");
  {
    Crew lCrew;
    lCrew.add([&] {
      for (int i = 0; i < 5; ++i) {
        lLogger.setPlayRate(100 + schedule::pick(20000));
        schedule::flip() ? lLogger.pausePlay() : lLogger.stepPlay();
        schedule::sleepMs(schedule::pick(100));
        lLogger.resumePlay();
        schedule::sleepMs(schedule::pick(400));
      }
    });
    for (unsigned int i = schedule::pick(5); i > 0; --i) {
      schedule::sleepMs(schedule::pick(1300));
      gTarget = schedule::pick(LENGTH_MS + 1);
      const schedule::Within lWithin("seekPlay()", 30000);
      schedule::require(lLogger.seekPlay(gTarget), "a playback can be sought in");
    }
  }
  while (!lFollower.mIsEnded) {
    lLogger.resumePlay();
    schedule::sleepMs(500);
  }
  schedule::require(lFollower.mIsWhole, "everything behind the last seek is heard");
  lLogger.stopPlay();
  endLogs();
}
