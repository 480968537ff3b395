#include "SettingSearch.h"

#include <cstring>

#include "NfwAppLog.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

thread_local const SettingFileName* tpName = nullptr;  // the innermost of the thread

// A line whose first character is "#". Where the platform marks the start of a line, the text begins behind the mark.
bool isComment(const char* npLine) {
  bool lIsMarked = false;
  const unsigned int lBytes = utl::strCharBytesBase(npLine, &lIsMarked);
  return npLine[lIsMarked ? lBytes : 0] == '#';
}

}  // namespace

SettingFileName::SettingFileName(const utl::File& nFile, const char* npPath)
    : mFile(nFile), mpPath(npPath), mpOuter(tpName) {
  tpName = this;
}

SettingFileName::~SettingFileName() { tpName = mpOuter; }

const char* SettingFileName::of(const utl::File& nFile) {
  for (const SettingFileName* lpName = tpName; lpName != nullptr; lpName = lpName->mpOuter) {
    if (&lpName->mFile == &nFile) return lpName->mpPath;
  }
  return nFile.getPath();
}

SettingSearch::Result SettingSearch::run(unsigned long long nEndPosition) {
  unsigned long long lPosition = 0;
  if (!checkArguments() || !readPosition(&lPosition)) return FAILED;
  while (lPosition < nEndPosition) {
    const Result lRead = readLine();
    if (lRead != FOUND) return lRead;
    if (!readPosition(&lPosition)) return FAILED;
    if (const char* const lpValue = valueOfKey()) return takeValue(lpValue);
  }
  return NOT_FOUND;
}

bool SettingSearch::checkArguments() {
  const char* const lpPath = SettingFileName::of(mFile);
  if (mpKey == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Key is Null [%s]", lpPath);
  } else if (mpValue == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Value is Null [%s]", lpPath);
  } else if (*mpKey == '\0') {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Key is Empty [%s]", lpPath);
  } else if (strlen(mpKey) > SETTING_KEY_MAX) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Key is Too Long:Key=%s [%s]", mpKey, lpPath);
  } else {
    return true;
  }
  return false;
}

bool SettingSearch::readPosition(unsigned long long* npPosition) {
  if (mFile.getPosition(npPosition)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Get Current File Position:Key=%s [%s]", mpKey,
         SettingFileName::of(mFile));
  return false;
}

SettingSearch::Result SettingSearch::readLine() {
  const int lLength = mFile.readLine(mLine, sizeof(mLine));
  if (lLength >= 0) return FOUND;
  if (lLength == utl::File::RESULT_EOF) return NOT_FOUND;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Read File:Key=%s [%s]", mpKey, SettingFileName::of(mFile));
  return FAILED;
}

const char* SettingSearch::valueOfKey() const {
  const size_t lLength = strlen(mpKey);
  if (isComment(mLine) || strncmp(mLine, mpKey, lLength) != 0 || mLine[lLength] != '=') return nullptr;
  return mLine + lLength + 1;
}

SettingSearch::Result SettingSearch::takeValue(const char* npValue) {
  if (utl::copyStr(mpValue, mValueSize, npValue)) return FOUND;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SettingFile::find():Copy Value:Line=%s [%s]", mLine,
         SettingFileName::of(mFile));
  return FAILED;
}

}  // namespace nfw
