// Searches and typed reads over arbitrary bytes. An input is a byte for the position, a key, a zero byte and the file.
#include <cstdint>
#include <cstring>

#include "Fuzz.h"
#include "NfwSettingFile.h"

namespace {

// A number is read only where its text is found; otherwise its target keeps its value.
template <class T>
void checkNumber(utl::File& nFile, const char* npKey, bool nIsFound) {
  T lNumber = 77;
  require(nFile.seek(0, utl::File::ORIGIN_BEGIN));
  const bool lIsRead = nfw::SettingFile::readParam(nFile, npKey, &lNumber);
  require(lIsRead ? nIsFound : lNumber == 77);
  nfw::SettingFile::readParam(nFile, npKey, &lNumber);  // goes on behind the line, and around
}

template <class... T>
void checkNumbers(utl::File& nFile, const char* npKey, bool nIsFound) {
  (checkNumber<T>(nFile, npKey, nIsFound), ...);
}

void check(utl::File& nFile, const char* npKey, long long nPosition) {
  char lValue[201] = {};
  const bool lIsFound = nfw::SettingFile::find(nFile, npKey, lValue, sizeof(lValue));
  require(strlen(lValue) < sizeof(lValue) && (lIsFound || lValue[0] == '\0'));
  checkNumbers<int, unsigned int, short, unsigned short, signed char, unsigned char>(nFile, npKey, lIsFound);
  require(nFile.seek(nPosition, utl::File::ORIGIN_BEGIN));
  char lShort[4] = {};
  nfw::SettingFile::find(nFile, npKey, lShort, sizeof(lShort));
  nfw::SettingFile::find(nFile, npKey, lShort, sizeof(lShort), static_cast<unsigned long long>(nPosition) + 10);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  if (nSize < 2) return 0;
  const std::string lInput(reinterpret_cast<const char*>(npData + 1), nSize - 1);
  const std::string lKey(lInput.c_str());
  const size_t lFileStart = lKey.size() < lInput.size() ? lKey.size() + 1 : lInput.size();
  const MemoryFile lMemory(lInput.data() + lFileStart, lInput.size() - lFileStart);
  utl::File lFile(lMemory.mPath.c_str());
  require(lFile.open(0, 0));
  check(lFile, lKey.c_str(), npData[0]);
  return 0;
}
