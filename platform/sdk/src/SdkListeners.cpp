#include "SdkListeners.h"

#include "SeamState.h"

bool SdkListenerTable::add(void* npListener, int nKey) {
  if (npListener == nullptr || seams::fails(seams::REGISTRATION)) return false;
  std::lock_guard<std::mutex> lLock(mMutex);
  for (unsigned int i = 0; i < mEntries.size(); ++i) {
    if (mEntries[i].mpListener == npListener && mEntries[i].mKey == nKey) return true;
  }
  if (!mEntries.add(Entry{npListener, nKey, mNextNumber})) return false;
  ++mNextNumber;
  return true;
}

bool SdkListenerTable::remove(void* npListener) {
  std::unique_lock<std::mutex> lLock(mMutex);
  bool lIsFound = false;
  for (unsigned int i = mEntries.size(); i-- > 0;) {
    if (mEntries[i].mpListener == npListener) lIsFound = mEntries.removeAt(i);
  }
  if (isOwnCallbackLocked(npListener)) return lIsFound;
  const unsigned long long lLimit = mNextNumber;  // a registration of the same listener that follows is not waited for
  mHasLeft.wait(lLock, [&] { return !isInsideLocked(npListener, lLimit); });
  return lIsFound;
}

bool SdkListenerTable::has(int nKey) {
  std::lock_guard<std::mutex> lLock(mMutex);
  for (unsigned int i = 0; i < mEntries.size(); ++i) {
    if (mEntries[i].mKey == nKey) return true;
  }
  return false;
}

bool SdkListenerTable::isInsideLocked(const void* npListener, unsigned long long nLimit) const {
  for (const Walk* lpWalk = mpWalks; lpWalk != nullptr; lpWalk = lpWalk->mpNext) {
    if (lpWalk->mpInside == npListener && lpWalk->mNumber < nLimit) return true;
  }
  return false;
}

bool SdkListenerTable::isOwnCallbackLocked(const void* npListener) const {
  for (const Walk* lpWalk = mpWalks; lpWalk != nullptr; lpWalk = lpWalk->mpNext) {
    if (lpWalk->mpInside == npListener && lpWalk->mThread == std::this_thread::get_id()) return true;
  }
  return false;
}

SdkListenerTable::Walk::Walk(SdkListenerTable& nTable, int nKey) : mTable(nTable), mKey(nKey) {
  std::lock_guard<std::mutex> lLock(mTable.mMutex);
  mLimit = mTable.mNextNumber;
  mpNext = mTable.mpWalks;
  mTable.mpWalks = this;
}

SdkListenerTable::Walk::~Walk() {
  std::lock_guard<std::mutex> lLock(mTable.mMutex);
  Walk** lppWalk = &mTable.mpWalks;
  while (*lppWalk != this) lppWalk = &(*lppWalk)->mpNext;
  *lppWalk = mpNext;
  mTable.mHasLeft.notify_all();
}

// The numbers grow along the table, so the walk goes on behind the last one whatever was removed meanwhile.
void* SdkListenerTable::Walk::next() {
  std::lock_guard<std::mutex> lLock(mTable.mMutex);
  mpInside = nullptr;
  mTable.mHasLeft.notify_all();
  for (unsigned int i = 0; i < mTable.mEntries.size(); ++i) {
    const Entry& lEntry = mTable.mEntries[i];
    if (lEntry.mKey != mKey || lEntry.mNumber <= mNumber || lEntry.mNumber >= mLimit) continue;
    mNumber = lEntry.mNumber;
    mpInside = lEntry.mpListener;
    return lEntry.mpListener;
  }
  return nullptr;
}
