// Reads sentences from standard input and prints each position.
#include <NaviAppFramework.h>

#include <cstdio>
#include <cstring>

#include "utl/MsgDrivenSharedThread.h"

class Positions : public nfw::ParsedGgaDataListener {  // called on the thread below, never on the reader's
  void onNotifyParsedGgaData(const nfw::GgaSentence& nFix) override {
    std::printf("%02u:%02u:%02u  %2d deg %07.4f'  %3d deg %07.4f'\n", nFix.utcTime.hour, nFix.utcTime.minute,
                nFix.utcTime.second, nFix.latitude.degree, nFix.latitude.minute, nFix.longitude.degree,
                nFix.longitude.minute);
  }
};

int main() {
  utl::MsgDrivenSharedThread lThread(nfw::GnssDataDispatcher::getMaxMsgDataSize(), 1024, 0, "First_SharedThread", 0);
  if (lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) != 0) return 1;
  nfw::GnssDataDispatcher lDispatcher(&lThread, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  Positions lPositions;
  lDispatcher.attachParsedGgaDataListener(&lPositions);

  char lLine[128];
  while (std::fgets(lLine, sizeof(lLine), stdin) != nullptr) {
    const auto lLength = static_cast<unsigned int>(std::strcspn(lLine, "\r\n"));
    lLine[lLength] = '\0';
    nfw::GgaSentence lFix;
    if (nfw::NmeaDataParser::analyzeNmeaSentenceType(lLine, lLength) == nfw::NMEA_GGA &&
        nfw::NmeaDataParser::parseGgaSentence(lLine, lLength, &lFix)) {
      lDispatcher.dispatch(lFix);
    }
  }
  return lThread.stop(1, 30000);  // what is queued is handled first
}
