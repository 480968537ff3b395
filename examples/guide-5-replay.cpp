// Plays a recording of step 4 back to the same listener: step 5 of docs/guide.md.
//   example_guide-5-replay FILE
#include <cstdlib>
#include <string>

#include "guide-positions.h"

class Replay : public Positions, private nfw::LogPlayListener {
 public:
  Replay(const char* npFile, utl::Event& nIsWhole) : Positions("Replay"), mpFile(npFile), mIsWhole(nIsWhole) {}

 private:
  int startImp() override {
    nfw::Logger& lLogger = *nfw::Logger::get();
    const bool lIsStarted = lLogger.attachPlayListener(LOG_ID_END, this) && lLogger.startPlay(mpFile);
    return lIsStarted ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
  }
  int stopImp() override {
    nfw::Logger::get()->stopPlay();  // before the services that it plays to
    nfw::Logger::get()->detachPlayListener(this);
    return nfw::PHASE_DONE;
  }

  // On the thread of this id's replay: the record that the recorder wrote behind the last sentence.
  void receiveLogPlayData(int /*nLogTypeId*/, const unsigned char* npData, unsigned int nSize) override {
    mExpected = std::atoi(std::string(reinterpret_cast<const char*>(npData), nSize).c_str());
    checkWhole();
  }
  void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) override {  // on the thread of Gnss
    Positions::onNotifyNmeaData(npData, nSize);
    checkWhole();
  }
  void checkWhole() {
    if (mExpected >= 0 && sentenceCount() == static_cast<unsigned int>(mExpected)) mIsWhole.on();
  }

  const char* const mpFile;
  utl::Event& mIsWhole;
  std::atomic<int> mExpected{-1};
};

int main(int nArgNum, char** nppArgs) {
  if (nArgNum != 2) {
    std::fprintf(stderr, "usage: %s FILE\n", nppArgs[0]);
    return 2;
  }
  Application lApplication;
  utl::Event lIsWhole(false);
  lApplication.add(new Services);
  lApplication.add(new Replay(nppArgs[1], lIsWhole));
  lApplication.goUp();
  const bool lResult = lIsWhole.waitToOn(60000);
  lApplication.goDown();
  std::printf(lResult ? "every sentence came back\n" : "sentences are missing\n");
  return lResult ? 0 : 1;
}
