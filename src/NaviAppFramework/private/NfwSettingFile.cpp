#include "NfwSettingFile.h"

#include <climits>
#include <cstring>
#include <limits>

#include "FileReplacement.h"
#include "NfwAppLog.h"
#include "SettingNumber.h"
#include "SettingSearch.h"
#include "Watched.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

// Where a file is opened to read, and to be created or truncated.
const int READ_MODE = 0;
const int READ_EXISTING = 0;
const int WRITE_MODE = 2;
const int WRITE_NEW = 1;

bool checkParam(const utl::File& nFile, const char* npKey, const char* npValue) {
  const char* const lpPath = SettingFileName::of(nFile);
  if (npKey == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Key is Null [%s]", lpPath);
  } else if (npValue == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Value is Null [%s]", lpPath);
  } else if (*npKey == '\0') {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Key is Empty [%s]", lpPath);
  } else if (strlen(npKey) > SETTING_KEY_MAX) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Key is Too Long:Key=%s [%s]", npKey, lpPath);
  } else if (strlen(npValue) > SETTING_VALUE_MAX) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Value is Too Long:Key=%s [%s]", npKey, lpPath);
  } else {
    return true;
  }
  return false;
}

bool composeLine(char (&npLine)[SETTING_LINE_SIZE], const char* npKey, const char* npValue, const char* npPath) {
  if (!utl::copyStr(npLine, sizeof(npLine), npKey)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Copy Key:Key=%s [%s]", npKey, npPath);
  } else if (!utl::appendStr(npLine, sizeof(npLine), "=")) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Combine Separator:Key=%s [%s]", npKey, npPath);
  } else if (!utl::appendStr(npLine, sizeof(npLine), npValue)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Combine Value:Key=%s Value=%s [%s]", npKey,
           npValue, npPath);
  } else {
    return true;
  }
  return false;
}

template <class T>
bool readNumber(utl::File& nFile, const char* npKey, T* npValue) {
  char lText[SETTING_VALUE_SIZE] = {};
  if (!SettingFile::readParam(nFile, npKey, lText, sizeof(lText))) return false;
  long long lNumber = 0;
  using Limits = std::numeric_limits<T>;
  if (npValue == nullptr || !parseSettingNumber(lText, Limits::min(), Limits::max(), &lNumber)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::readParam():Convert String to Value:Key=%s [%s]", npKey,
           SettingFileName::of(nFile));
    return false;
  }
  *npValue = static_cast<T>(lNumber);
  return true;
}

bool writeNumber(utl::File& nFile, const char* npKey, long long nNumber) {
  char lText[SETTING_VALUE_SIZE] = {};
  formatSettingNumber(nNumber, lText);
  return SettingFile::writeParam(nFile, npKey, lText);
}

}  // namespace

SettingFile::SettingFile(char const* npPath) { setFilePath(npPath); }
SettingFile::~SettingFile() = default;

bool SettingFile::setFilePath(char const* npPath) {
  if (npPath == nullptr) return false;
  const WatchedLock lLock(mSync);
  if (utl::copyStr(mFilePath, sizeof(mFilePath), npPath)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::setFilePath():Copy Path [%s]", npPath);
  return false;
}

bool SettingFile::load() {
  const WatchedLock lLock(mSync);
  utl::File lFile(mFilePath);
  if (!lFile.exists()) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "SettingFile::load():File does not exist [%s]", mFilePath);
    return false;
  }
  if (!lFile.open(READ_MODE, READ_EXISTING)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::load():Open File [%s]", mFilePath);
    return false;
  }
  if (readParameters(lFile)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::load():Read Parameters [%s]", mFilePath);
  return false;
}

bool SettingFile::save() {
  const WatchedLock lLock(mSync);
  FileReplacement lReplacement(mFilePath);
  utl::File lFile(lReplacement.getPath());
  const SettingFileName lName(lFile, mFilePath);
  if (!lReplacement.isReady() || !lFile.open(WRITE_MODE, WRITE_NEW)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::save():Open File [%s]", mFilePath);
    return false;
  }
  if (!writeParameters(lFile)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::save():Write Parameters [%s]", mFilePath);
    return false;
  }
  const bool lIsWritten = lFile.flush();
  lFile.close();
  if (lIsWritten && lReplacement.commit()) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::save():Replace File [%s]", mFilePath);
  return false;
}

bool SettingFile::find(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize,
                       unsigned long long nEndPosition) {
  return SettingSearch(nFile, npKey, npValue, nValueSize).run(nEndPosition) == SettingSearch::FOUND;
}

bool SettingFile::find(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize) {
  const char* const lpShownKey = npKey != nullptr ? npKey : "";
  unsigned long long lStart = 0;
  if (!nFile.getPosition(&lStart)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Get Initial File Position:Key=%s [%s]", lpShownKey,
           SettingFileName::of(nFile));
    return false;
  }
  SettingSearch lSearch(nFile, npKey, npValue, nValueSize);
  SettingSearch::Result lResult = lSearch.run(ULLONG_MAX);
  if (lResult == SettingSearch::NOT_FOUND && lStart != 0) {
    if (!nFile.seek(0, utl::File::ORIGIN_BEGIN)) {
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Seek File:Key=%s [%s]", lpShownKey,
             SettingFileName::of(nFile));
      return false;
    }
    lResult = lSearch.run(lStart);
  }
  return lResult == SettingSearch::FOUND;
}

bool SettingFile::readParam(utl::File& nFile, char const* npKey, char* npValue, unsigned int nValueSize) {
  return find(nFile, npKey, npValue, nValueSize);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, signed char* npValue) {
  return readNumber(nFile, npKey, npValue);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, unsigned char* npValue) {
  return readNumber(nFile, npKey, npValue);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, short* npValue) {
  return readNumber(nFile, npKey, npValue);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, unsigned short* npValue) {
  return readNumber(nFile, npKey, npValue);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, int* npValue) {
  return readNumber(nFile, npKey, npValue);
}
bool SettingFile::readParam(utl::File& nFile, char const* npKey, unsigned int* npValue) {
  return readNumber(nFile, npKey, npValue);
}

bool SettingFile::writeParam(utl::File& nFile, char const* npKey, char const* npValue) {
  char lLine[SETTING_LINE_SIZE] = {};
  const char* const lpPath = SettingFileName::of(nFile);
  if (!checkParam(nFile, npKey, npValue) || !composeLine(lLine, npKey, npValue, lpPath)) return false;
  if (nFile.writeLine(lLine)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::writeParam():Write File:Key=%s Value=%s [%s]", npKey, npValue,
         lpPath);
  return false;
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, signed char nValue) {
  return writeNumber(nFile, npKey, nValue);
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, unsigned char nValue) {
  return writeNumber(nFile, npKey, nValue);
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, short nValue) {
  return writeNumber(nFile, npKey, nValue);
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, unsigned short nValue) {
  return writeNumber(nFile, npKey, nValue);
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, int nValue) {
  return writeNumber(nFile, npKey, nValue);
}
bool SettingFile::writeParam(utl::File& nFile, char const* npKey, unsigned int nValue) {
  return writeNumber(nFile, npKey, nValue);
}

}  // namespace nfw
