// Records lines of standard input for the road: synced, in files of ten minutes, never more than a medium takes.
//   example_record DIRECTORY < LINES
#include <cstring>

#include "guide.h"

int main(int nArgNum, char** nppArgs) {
  if (nArgNum != 2) {
    std::fprintf(stderr, "usage: %s DIRECTORY\n", nppArgs[0]);
    return 2;
  }
  nfw::initializeNaviAppFramework(guideConfig());
  nfw::setAllFilterLevel(nfw::LOG_LEVEL_WARNING);
  nfw::Logger& lLogger = *nfw::Logger::get();
  if (!lLogger.initialize()) return 1;

  lLogger.setSyncInterval(1000);             // what the ignition may cost at most, in milliseconds
  lLogger.setMaxFileTime(10 * 60000, true);  // files end at ten past, twenty past, ...
  nfw::LogRetentionLimits lLimits;
  lLimits.mMaxTotalSize = 2ULL << 30;
  lLimits.mMinFreeSize = 100ULL << 20;
  nfw::LogRetention lRetention(nppArgs[1], "road", lLimits);

  const bool lIsRecording = lRetention.start() && lLogger.startRecord(nppArgs[1], "road", nullptr);
  char lLine[256];
  while (lIsRecording && std::fgets(lLine, sizeof(lLine), stdin) != nullptr) {
    nfw::Logger::write(LOG_ID_END, lLine, static_cast<unsigned int>(std::strcspn(lLine, "\n")));  // waits for no disk
  }
  lLogger.stopRecord();
  lRetention.stop();
  const nfw::LogRecordCounts lCounts = lLogger.getRecordCounts();
  std::printf("%llu records, %llu lost, %u files deleted\n", lCounts.mRecorded, lCounts.missing(),
              lRetention.getCounts().mDeletedNum);
  lLogger.shutdown();
  nfw::Logger::destroy();
  nfw::finalizeNaviAppFramework();
  return lIsRecording && lCounts.missing() == 0 ? 0 : 1;
}
