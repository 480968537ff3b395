#include "NfwAppLog.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "NfwLogger.h"
#include "SysLogService.h"
#include "Watched.h"
#include "utl/Map.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

const unsigned int LINE_SIZE = 1024;
const unsigned int NAME_SIZE = 32;
const unsigned int FIRST_TYPE_NUM = 64;
const int UNREGISTERED_TYPE = -1;
const int UNREGISTERED_LEVEL = 6;  // what getFilterLevel says of a type that nobody registered

const unsigned int TAG_LENGTH = 5;
const char* const TAGS[] = {"NO : ", "ERR: ", "WRN: ", "INF: ", "DTL: ", "DBG: "};

struct LogTypeData {
  int filterLevel = LOG_LEVEL_DETAIL;
  char name[NAME_SIZE] = {};
};

using LogTypeMap = utl::Map<int, LogTypeData>;

/// Never destroyed: a thread may log while the process ends.
struct LogRegistry {
  ZTSync mSync{"nfw::AppLog"};
  std::atomic<unsigned int> mGeneration{1};             // counts the changes
  LogTypeMap* mpTypes NFW_GUARDED_BY(mSync) = nullptr;  // none before the first registration
  const LogTypeData mDefault{};

  static LogRegistry& get() {
    static LogRegistry* const lpRegistry = new LogRegistry;
    return *lpRegistry;
  }

  void noteChange() NFW_REQUIRES(mSync) { mGeneration.fetch_add(1, std::memory_order_release); }
  LogTypeData* find(int nType) NFW_REQUIRES(mSync) { return mpTypes != nullptr ? mpTypes->find(nType) : nullptr; }
};

int clampLevel(int nLevel) {
  return static_cast<unsigned int>(nLevel) > LOG_LEVEL_DEBUG ? static_cast<int>(LOG_LEVEL_DEBUG) : nLevel;
}

/// What a thread saw last in the registry: most lines of a type that are dropped are dropped by this, without the lock.
struct FilterMemo {
  unsigned int mGeneration = 0;
  int mType = 0;
  int mFilterLevel = 0;

  bool drops(int nType, int nLevel) const {
    return mType == nType && mFilterLevel < nLevel &&
           mGeneration == LogRegistry::get().mGeneration.load(std::memory_order_acquire);
  }
};

thread_local FilterMemo gFilterMemo;

/// One line under way: built on the caller's stack, written when its filter lets it pass.
class LogLine {
 public:
  /// Decides whether the line is written, and copies what it needs out of the registry.
  bool admit(int nType, int nLevel) {
    mLevel = clampLevel(nLevel);
    if (mLevel == LOG_LEVEL_NONE || gFilterMemo.drops(nType, mLevel)) return false;
    LogRegistry& lRegistry = LogRegistry::get();
    const WatchedLock lLock(lRegistry.mSync);
    const LogTypeData* lpData = lRegistry.find(nType);
    mType = lpData != nullptr ? nType : UNREGISTERED_TYPE;
    if (lpData == nullptr) lpData = &lRegistry.mDefault;
    gFilterMemo = {lRegistry.mGeneration.load(std::memory_order_relaxed), nType, lpData->filterLevel};
    if (lpData->filterLevel < mLevel) return false;
    setPrefix(lpData->name);
    return true;
  }

  /// Behind the prefix; a cut text ends in "...". False when it cannot be formatted.
  bool format(const char* npFormat, va_list nArguments) NFW_PRINTF(2, 0) {
    const unsigned int lSpace = LINE_SIZE - mPrefixLength;
    const int lLength = vsnprintf(mText + mPrefixLength, lSpace, npFormat, nArguments);
    if (lLength < 0) return false;
    mLength = mPrefixLength + static_cast<unsigned int>(lLength);
    if (mLength >= LINE_SIZE) {
      mLength = LINE_SIZE - 1;
      memcpy(mText + mLength - 3, "...", 3);
    }
    return true;
  }

  void writeTo(int nLoggerId) const { Logger::write(nLoggerId, mText, mLength); }
  void writeToService() const { ::applog(mType, mLevel, mText + mPrefixLength); }

 private:
  void setPrefix(const char* npName) {
    const unsigned int lNameLength = static_cast<unsigned int>(strlen(npName));
    memcpy(mText, npName, lNameLength);
    memcpy(mText + lNameLength, TAGS[mLevel], TAG_LENGTH);
    mPrefixLength = lNameLength + TAG_LENGTH;
  }

  int mType = UNREGISTERED_TYPE;
  int mLevel = LOG_LEVEL_NONE;
  unsigned int mPrefixLength = 0;
  unsigned int mLength = 0;
  char mText[LINE_SIZE];
};

/// Both writers. Out of line of the filter's test, which most lines do not pass.
void writeLine(int nType, int nLevel, int nLoggerId, const char* npFormat, va_list nArguments) NFW_PRINTF(4, 0);
void writeLine(int nType, int nLevel, int nLoggerId, const char* npFormat, va_list nArguments) {
  LogLine lLine;
  if (npFormat == nullptr || !lLine.admit(nType, nLevel) || !lLine.format(npFormat, nArguments)) return;
  lLine.writeTo(nLoggerId);
  lLine.writeToService();
}

}  // namespace

bool registerLogType(int nType, const char* npName, int nLevel) {
  if (!::registerLogType(nType, npName, nLevel)) return false;
  LogTypeData lData;
  if (!utl::copyStr(lData.name, NAME_SIZE, npName)) return false;
  lData.filterLevel = clampLevel(nLevel);

  LogRegistry& lRegistry = LogRegistry::get();
  const WatchedLock lLock(lRegistry.mSync);
  lRegistry.noteChange();
  if (lRegistry.mpTypes == nullptr) lRegistry.mpTypes = new LogTypeMap(FIRST_TYPE_NUM, true);
  if (LogTypeData* const lpData = lRegistry.find(nType)) {
    *lpData = lData;
    return true;
  }
  return lRegistry.mpTypes->insert(nType, lData);
}

void setFilterLevel(int nType, int nLevel) {
  ::setFilterLevel(nType, nLevel);
  LogRegistry& lRegistry = LogRegistry::get();
  const WatchedLock lLock(lRegistry.mSync);
  lRegistry.noteChange();
  if (LogTypeData* const lpData = lRegistry.find(nType)) lpData->filterLevel = clampLevel(nLevel);
}

void setAllFilterLevel(int nLevel) {
  ::setAllFilterLevel(nLevel);
  LogRegistry& lRegistry = LogRegistry::get();
  const WatchedLock lLock(lRegistry.mSync);
  if (lRegistry.mpTypes == nullptr) return;
  lRegistry.noteChange();
  for (unsigned int i = 0; i < lRegistry.mpTypes->size(); ++i) {
    lRegistry.mpTypes->valueAt(i).filterLevel = clampLevel(nLevel);
  }
}

int getFilterLevel(int nType) {
  LogRegistry& lRegistry = LogRegistry::get();
  const WatchedLock lLock(lRegistry.mSync);
  const LogTypeData* const lpData = lRegistry.find(nType);
  return lpData != nullptr ? lpData->filterLevel : UNREGISTERED_LEVEL;
}

void finalizeAppLog() {
  LogRegistry& lRegistry = LogRegistry::get();
  const WatchedLock lLock(lRegistry.mSync);
  lRegistry.noteChange();
  delete lRegistry.mpTypes;
  lRegistry.mpTypes = nullptr;
}

}  // namespace nfw

void APPLOG(int nType, int nLevel, const char* npFormat, ...) {
  va_list lArguments;
  va_start(lArguments, npFormat);
  nfw::writeLine(nType, nLevel, nfw::APPLOG_LOGGER_ID, npFormat, lArguments);
  va_end(lArguments);
}

void APPLOG1(int nType, int nLevel, int nLoggerId, const char* npFormat, ...) {
  va_list lArguments;
  va_start(lArguments, npFormat);
  nfw::writeLine(nType, nLevel, nLoggerId, npFormat, lArguments);
  va_end(lArguments);
}

void LOGGERLOG(int nLoggerId, const char* npFormat, ...) {
  if (npFormat == nullptr) return;
  va_list lArguments;
  va_start(lArguments, npFormat);
  nfw::LogLine lLine;
  if (lLine.format(npFormat, lArguments)) lLine.writeTo(nLoggerId);
  va_end(lArguments);
}
