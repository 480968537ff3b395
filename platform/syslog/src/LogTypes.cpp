#include "LogTypes.h"

#include <cstring>

namespace syslogservice {

unsigned int LogTypes::indexOfLocked(int nType) const {
  unsigned int lIndex = 0;
  while (lIndex < mNum && mEntries[lIndex].mType != nType) ++lIndex;
  return lIndex;
}

bool LogTypes::set(int nType, const char* npName, int nLevel) {
  std::lock_guard<std::mutex> lLock(mMutex);
  const unsigned int lIndex = indexOfLocked(nType);
  if (lIndex == MAX_NUM) return false;
  if (lIndex == mNum) ++mNum;
  Entry& lEntry = mEntries[lIndex];
  lEntry = Entry{nType, nLevel, {}};
  if (npName != nullptr) memcpy(lEntry.mName, npName, strnlen(npName, NAME_SIZE - 1));
  return true;
}

void LogTypes::setLevel(int nType, int nLevel) {
  std::lock_guard<std::mutex> lLock(mMutex);
  const unsigned int lIndex = indexOfLocked(nType);
  if (lIndex < mNum) mEntries[lIndex].mLevel = nLevel;
}

void LogTypes::setAllLevels(int nLevel) {
  std::lock_guard<std::mutex> lLock(mMutex);
  for (unsigned int i = 0; i < mNum; ++i) mEntries[i].mLevel = nLevel;
}

bool LogTypes::get(int nType, char (&nName)[NAME_SIZE], int* npLevel) const {
  std::lock_guard<std::mutex> lLock(mMutex);
  const unsigned int lIndex = indexOfLocked(nType);
  if (lIndex == mNum) return false;
  memcpy(nName, mEntries[lIndex].mName, NAME_SIZE);
  *npLevel = mEntries[lIndex].mLevel;
  return true;
}

}  // namespace syslogservice
