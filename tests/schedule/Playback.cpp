// Playback in every state, by two threads, with players and with listeners that stop it, leave and come again.
#include <array>
#include <atomic>

#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogger.h"
#include "Scenarios.h"
#include "utl/Event.h"

namespace {

using nfw::Logger;
const int IDS = 3, RECORDS = 6;

std::atomic<int> gPlayback{0};    // the number of the one that plays, or played last
std::atomic<bool> gIsOver{true};  // a stopPlay() has returned behind it

utl::Event gInside(false);     // a listener takes its time
std::atomic<int> gStopped{0};  // the last one that a listener has stopped

class Hearer : public nfw::LogPlayListener {
 public:
  void receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) override {
    mPlace.called("a play listener");
    schedule::require(!gIsOver, "no record is heard behind stopPlay()");
    schedule::require(nLogTypeId == mId && nSize == 1, "a listener hears its id");
    if (mPlayback != gPlayback) mOrder.begin();
    mPlayback = gPlayback.load();
    mOrder.see(*npData);
    act();
  }
  void come() {
    mPlace.attach([this] { return Logger::get()->attachPlayListener(mId, this); });
  }
  void go(bool nIsInside) {
    mPlace.detach([this] { Logger::get()->detachPlayListener(this); }, !nIsInside);
  }
  int mId = 0;

 private:
  void act() {
    const unsigned int lWay = schedule::pick(24);
    if (lWay == 0) go(true);
    if (lWay == 1 || lWay == 2) gInside.on(), schedule::sleepMs(schedule::pick(50));
    if (lWay == 2 || lWay == 3) gStopped = mPlayback, Logger::get()->stopPlay();
  }
  Place mPlace;
  Ascending mOrder{"records are heard"};
  int mPlayback = 0;
};

/// Is told of a playback in this order: start, end, stop; the end may be missing.
class Watcher : public nfw::LogPlayer {
 public:
  void notifyPlayStart() override {
    tell(NONE, STARTED, "a playback starts once");
    schedule::sleepMs(mDelayMs);
  }
  void notifyPlayEnd(int /*nReason*/) override { tell(STARTED, ENDED, "a playback ends once, behind its start"); }
  void notifyPlayStop() override {
    schedule::outward("a player");
    mState = NONE;
  }
  unsigned int mDelayMs = 0;

 private:
  enum State { NONE, STARTED, ENDED };
  void tell(State nBefore, State nBehind, const char* npWords) {
    schedule::outward("a player");
    schedule::require(mState == nBefore, npWords);
    mState = nBehind;
  }
  State mState = NONE;
};

}  // namespace

void playback() {
  sizeLogs(1000, 20000);
  std::string lFile;
  for (int i = 0; i < IDS * RECORDS; ++i) {
    lFile += nfwtest::logRecord(i % IDS, static_cast<unsigned int>(i) * 10, std::string(1, static_cast<char>(i)));
  }
  writeFile("played", lFile);
  Logger& lLogger = *Logger::get();
  std::array<Hearer, IDS> lHearers;
  Watcher lWatcher;
  schedule::require(lLogger.initialize() && lLogger.attachPlayer(&lWatcher), "the logger starts");
  for (int i = 0; i < IDS; ++i) lHearers[static_cast<size_t>(i)].mId = i;
  {
    Crew lCrew;
    const auto lChange = [&] {
      for (int k = 0; k < 6; ++k) {
        Hearer& lHearer = lHearers[schedule::pick(IDS)];
        schedule::pick(3) != 0 ? lHearer.come() : lHearer.go(false);
        schedule::sleepMs(schedule::pick(600));
      }
    };
    lCrew.add(lChange, 2);
    const unsigned int lPlays = 1 + schedule::pick(3);
    for (unsigned int i = 0; i < lPlays; ++i) {
      while (lLogger.isPlaying()) schedule::sleepMs(1);  // one that a listener stops
      gIsOver = false, ++gPlayback;
      schedule::require(lLogger.startPlay("played"), "a playback begins when none runs");
      gInside.off();
      gInside.waitToOn(schedule::flip() ? 3000 : 980 + schedule::pick(250));
      schedule::require(lLogger.isPlaying() || gStopped == gPlayback, "a playback plays until it is stopped");
      const schedule::Within lWithin("stopPlay()", 30000);
      lLogger.stopPlay();
      gIsOver = true;
    }
  }
  gIsOver = false, ++gPlayback;
  const bool lIsStuck = schedule::pick(4) == 0;  // a player that does not return in time
  if (lIsStuck) lWatcher.mDelayMs = 100000;
  schedule::require(lLogger.startRecord(".", "s", nullptr), "a recording begins");
  Logger::write(1, "kept", 4);
  if (lIsStuck || schedule::flip()) lLogger.startPlay("played");
  schedule::sleepMs(schedule::pick(1300));
  {
    const schedule::Within lWithin("the end of the logger", 31000);
    if (schedule::flip()) lLogger.shutdown();
    Logger::destroy();
  }
  if (lIsStuck) schedule::sleepMs(200000);  // it returns into what was left behind for it
}
