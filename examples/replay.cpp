// Plays the files of a recording as one: pauses at the first record, goes on, and then from the middle again.
//   example_replay FILE...
#include "guide.h"

namespace {

/// Hears the records on a thread of the replay, and of the end on the logger's.
class Listener : public nfw::LogPlayListener, public nfw::LogPlayer {
 public:
  void receiveLogPlayData(int /*nLogTypeId*/, const unsigned char* npData, unsigned int nSize) override {
    std::printf("%.*s\n", static_cast<int>(nSize), reinterpret_cast<const char*>(npData));
    mIsHeard.on();
  }
  void notifyPlayStart() override {}
  void notifyPlayStop() override {}
  void notifyPlaySeek() override { mIsOver.off(); }  // the end is told again
  void notifyPlayEnd(int /*nReason*/) override { mIsOver.on(); }

  utl::Event mIsHeard{false}, mIsOver{false};
};

bool play(nfw::Logger& nLogger, Listener& nListener, const char* const* nppFiles, unsigned int nFileNum) {
  if (!nLogger.startPlay(nppFiles, nFileNum)) return false;  // what cannot be read stands in the log
  if (!nListener.mIsHeard.waitToOn(60000)) return false;
  nLogger.pausePlay();
  const nfw::LogPlayPosition lPosition = nLogger.getPlayPosition();
  std::printf("%s, %u ms in all\n", lPosition.mIsPaused ? "paused" : "not paused", lPosition.mLengthMs);

  nLogger.setPlayRate(10000);  // ten times as fast
  nLogger.resumePlay();
  if (!nListener.mIsOver.waitToOn(600000)) return false;
  std::printf("once more from the middle\n");
  return nLogger.seekPlay(lPosition.mLengthMs / 2) && nListener.mIsOver.waitToOn(600000) && nLogger.stopPlay();
}

}  // namespace

int main(int nArgNum, char** nppArgs) {
  if (nArgNum < 2) {
    std::fprintf(stderr, "usage: %s FILE...\n", nppArgs[0]);
    return 2;
  }
  nfw::initializeNaviAppFramework(guideConfig());
  nfw::setAllFilterLevel(nfw::LOG_LEVEL_WARNING);
  nfw::Logger& lLogger = *nfw::Logger::get();
  Listener lListener;
  const bool lIsReady =
      lLogger.initialize() && lLogger.attachPlayer(&lListener) && lLogger.attachPlayListener(LOG_ID_END, &lListener);
  const bool lIsPlayed = lIsReady && play(lLogger, lListener, nppArgs + 1, static_cast<unsigned int>(nArgNum - 1));
  lLogger.stopPlay();
  lLogger.detachPlayListener(&lListener);
  lLogger.detachPlayer(&lListener);
  lLogger.shutdown();
  nfw::Logger::destroy();
  nfw::finalizeNaviAppFramework();
  return lIsPlayed ? 0 : 1;
}
