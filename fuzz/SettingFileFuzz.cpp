// Searches and typed reads over arbitrary bytes. An input is a byte for the position, a key, a zero byte and the file.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "NfwSettingFile.h"
#include "SysLogServiceHost.h"

namespace {

class NoSink : public syslogservice::Sink {
  void writeLine(int, int, const char*) override {}
};

void require(bool nHolds) {
  if (!nHolds) abort();
}

// A number is read only where its text is found; otherwise its target keeps its value.
template <class T>
void checkNumber(utl::File& nFile, const char* npKey, bool nIsFound) {
  T lNumber = 77;
  require(nFile.seek(0, utl::File::ORIGIN_BEGIN));
  const bool lIsRead = nfw::SettingFile::readParam(nFile, npKey, &lNumber);
  require(lIsRead ? nIsFound : lNumber == 77);
  nfw::SettingFile::readParam(nFile, npKey, &lNumber);  // goes on behind the line, and around
}

void check(utl::File& nFile, const char* npKey, long long nPosition) {
  char lValue[201] = {};
  const bool lIsFound = nfw::SettingFile::find(nFile, npKey, lValue, sizeof(lValue));
  require(strlen(lValue) < sizeof(lValue) && (lIsFound || lValue[0] == '\0'));
  checkNumber<int>(nFile, npKey, lIsFound);
  checkNumber<unsigned int>(nFile, npKey, lIsFound);
  checkNumber<short>(nFile, npKey, lIsFound);
  checkNumber<unsigned short>(nFile, npKey, lIsFound);
  checkNumber<signed char>(nFile, npKey, lIsFound);
  checkNumber<unsigned char>(nFile, npKey, lIsFound);
  require(nFile.seek(nPosition, utl::File::ORIGIN_BEGIN));
  char lShort[4] = {};
  nfw::SettingFile::find(nFile, npKey, lShort, sizeof(lShort));
  nfw::SettingFile::find(nFile, npKey, lShort, sizeof(lShort), static_cast<unsigned long long>(nPosition) + 10);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  static NoSink* const lpSink = new NoSink;
  syslogservice::setSink(lpSink);
  if (nSize < 2) return 0;
  const std::string lInput(reinterpret_cast<const char*>(npData + 1), nSize - 1);
  const std::string lKey(lInput.c_str());
  const int lMemory = memfd_create("settings", 0);
  const size_t lFileStart = lKey.size() < lInput.size() ? lKey.size() + 1 : lInput.size();
  const size_t lFileSize = lInput.size() - lFileStart;
  require(write(lMemory, lInput.data() + lFileStart, lFileSize) == static_cast<ssize_t>(lFileSize));
  utl::File lFile(("/proc/self/fd/" + std::to_string(lMemory)).c_str());
  require(lFile.open(0, 0));
  check(lFile, lKey.c_str(), npData[0]);
  close(lMemory);
  return 0;
}
