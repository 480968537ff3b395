// Both readers over arbitrary bytes of a file: no crash, no endless loop, no record that is not there.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "NfwAppLog.h"
#include "NfwLogReader.h"
#include "NfwSysLogReader.h"

namespace {

const unsigned int BUFFER_SIZE = 300;

const std::string& path() {
  static const std::string lPath = "/tmp/nfw_reader_fuzz_" + std::to_string(getpid());
  return lPath;
}

bool writeFile(const uint8_t* npData, size_t nSize) {
  FILE* const lpFile = fopen(path().c_str(), "wb");
  if (lpFile == nullptr) return false;
  const bool lIsWritten = fwrite(npData, 1, nSize, lpFile) == nSize;
  return fclose(lpFile) == 0 && lIsWritten;
}

/// Positions go up, and every record lies in the file.
void judge(int nResult, unsigned long long nPosition, long long* npLast, unsigned int nHeaderSize, size_t nFileSize) {
  const bool lIsInside = nPosition + nHeaderSize + static_cast<unsigned int>(nResult) <= nFileSize;
  if (static_cast<long long>(nPosition) <= *npLast || !lIsInside) abort();
  *npLast = static_cast<long long>(nPosition);
}

void readLog(int nId, size_t nFileSize) {
  nfw::LogReader lReader;
  if (!lReader.open(nId, path().c_str())) abort();
  unsigned char lBuffer[BUFFER_SIZE];
  unsigned int lTime = 0;
  unsigned long long lPosition = 0;
  long long lLast = -1;
  lReader.getFirstLogTime(&lTime);
  for (int lResult = 0; (lResult = lReader.next(&lTime, lBuffer, BUFFER_SIZE, &lPosition)) >= 0;) {
    judge(lResult, lPosition, &lLast, 48, nFileSize);
  }
}

void readSensor(int nId, size_t nFileSize) {
  nfw::SysLogReader lReader;
  if (!lReader.open(nId, path().c_str())) abort();
  unsigned char lBuffer[BUFFER_SIZE];
  unsigned int lTime = 0;
  int lVersion = 0;
  unsigned long long lPosition = 0;
  long long lLast = -1;
  lReader.getFirstLogTime(&lTime);
  for (int lResult = 0; (lResult = lReader.next(&lVersion, &lTime, lBuffer, BUFFER_SIZE, &lPosition)) >= 0;) {
    judge(lResult, lPosition, &lLast, 7, nFileSize);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  if (nSize == 0) return 0;
  static const bool IS_QUIET = nfw::registerLogType(nfw::LOG_TYPE_NFW, "", nfw::LOG_LEVEL_NONE);
  if (!IS_QUIET) abort();
  const int lId = npData[0];
  if (!writeFile(npData + 1, nSize - 1)) return 0;
  readLog(lId, nSize - 1);
  readSensor(lId & 0xF, nSize - 1);
  unlink(path().c_str());
  return 0;
}
