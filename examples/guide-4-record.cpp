// Records what it receives: step 4 of docs/guide.md.
//   example_guide-4-record DIRECTORY
#include <cstring>

#include "guide-feed.h"
#include "guide-positions.h"

class Recorder : public Positions {
 public:
  explicit Recorder(const char* npDirectory) : Positions("Recorder"), mpDirectory(npDirectory) {}

 private:
  int startImp() override {
    return nfw::Logger::get()->startRecord(mpDirectory, "drive", nullptr) ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
  }
  int shutdownImp() override {  // behind that of Services: every sentence has been recorded
    nfw::Logger& lLogger = *nfw::Logger::get();
    if (!lLogger.isRecording()) return nfw::PHASE_FAILED;
    // A record of the application's own: how many sentences the recording has.
    char lCount[16];
    std::snprintf(lCount, sizeof(lCount), "%u", sentenceCount());
    nfw::Logger::write(LOG_ID_END, lCount, static_cast<unsigned int>(std::strlen(lCount)));
    lLogger.stopRecord();
    const nfw::LogRecordCounts lCounts = lLogger.getRecordCounts();
    std::printf("%u sentences, %llu records, %llu lost\n", sentenceCount(), lCounts.mRecorded, lCounts.missing());
    return nfw::PHASE_DONE;
  }

  const char* const mpDirectory;
};

int main(int nArgNum, char** nppArgs) {
  if (nArgNum != 2) {
    std::fprintf(stderr, "usage: %s DIRECTORY\n", nppArgs[0]);
    return 2;
  }
  Application lApplication;
  lApplication.add(new Services);
  lApplication.add(new Recorder(nppArgs[1]));
  lApplication.goUp();
  feedStandardInput();
  lApplication.goDown();
}
