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

int next(nfw::LogReader& nReader, unsigned int* npTime, unsigned char* npBuffer, unsigned long long* npPosition) {
  return nReader.next(npTime, npBuffer, BUFFER_SIZE, npPosition);
}

int next(nfw::SysLogReader& nReader, unsigned int* npTime, unsigned char* npBuffer, unsigned long long* npPosition) {
  int lVersion = 0;
  return nReader.next(&lVersion, npTime, npBuffer, BUFFER_SIZE, npPosition);
}

/// Positions go up, and every record lies in the file.
template <class Reader>
void readAll(int nId, unsigned int nHeaderSize, size_t nFileSize) {
  Reader lReader;
  if (!lReader.open(nId, path().c_str())) abort();
  unsigned char lBuffer[BUFFER_SIZE];
  unsigned int lTime = 0;
  unsigned long long lPosition = 0;
  long long lLast = -1;
  lReader.getFirstLogTime(&lTime);
  for (int lResult = 0; (lResult = next(lReader, &lTime, lBuffer, &lPosition)) >= 0;) {
    const bool lIsInside = lPosition + nHeaderSize + static_cast<unsigned int>(lResult) <= nFileSize;
    if (static_cast<long long>(lPosition) <= lLast || !lIsInside) abort();
    lLast = static_cast<long long>(lPosition);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  if (nSize == 0) return 0;
  static const bool IS_QUIET = nfw::registerLogType(nfw::LOG_TYPE_NFW, "", nfw::LOG_LEVEL_NONE);
  if (!IS_QUIET) abort();
  const int lId = npData[0];
  if (!writeFile(npData + 1, nSize - 1)) return 0;
  readAll<nfw::LogReader>(lId, 48, nSize - 1);
  readAll<nfw::SysLogReader>(lId & 0xF, 7, nSize - 1);
  unlink(path().c_str());
  return 0;
}
