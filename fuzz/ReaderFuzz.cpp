// Both readers over arbitrary bytes of a file: no crash, no endless loop, no record that is not there.
#include <cstdint>

#include "Fuzz.h"
#include "NfwLogReader.h"
#include "NfwSysLogReader.h"

namespace {

const unsigned int BUFFER_SIZE = 300;

int next(nfw::LogReader& nReader, unsigned int* npTime, unsigned char* npBuffer, unsigned long long* npPosition) {
  return nReader.next(npTime, npBuffer, BUFFER_SIZE, npPosition);
}

int next(nfw::SysLogReader& nReader, unsigned int* npTime, unsigned char* npBuffer, unsigned long long* npPosition) {
  int lVersion = 0;
  return nReader.next(&lVersion, npTime, npBuffer, BUFFER_SIZE, npPosition);
}

/// Positions go up, and every record lies in the file.
template <class Reader>
void readAll(int nId, unsigned int nHeaderSize, const MemoryFile& nFile, size_t nFileSize) {
  Reader lReader;
  require(lReader.open(nId, nFile.mPath.c_str()));
  unsigned char lBuffer[BUFFER_SIZE];
  unsigned int lTime = 0;
  unsigned long long lPosition = 0;
  long long lLast = -1;
  lReader.getFirstLogTime(&lTime);
  for (int lResult = 0; (lResult = next(lReader, &lTime, lBuffer, &lPosition)) >= 0;) {
    require(static_cast<long long>(lPosition) > lLast);
    require(lPosition + nHeaderSize + static_cast<unsigned int>(lResult) <= nFileSize);
    lLast = static_cast<long long>(lPosition);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  if (nSize == 0) return 0;
  const MemoryFile lFile(npData + 1, nSize - 1);
  readAll<nfw::LogReader>(npData[0], 48, lFile, nSize - 1);
  readAll<nfw::SysLogReader>(npData[0] & 0xF, 7, lFile, nSize - 1);
  return 0;
}
