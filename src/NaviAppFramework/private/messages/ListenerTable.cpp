#include "ListenerTable.h"

namespace nfw {

bool ListenerTable::attach(void* npListener) {
  const int lFound = indexOf(npListener);
  const Entry lEntry{npListener, mLastNumber + 1};
  if (lFound < 0 && !mEntries.add(lEntry)) return false;
  if (lFound >= 0) mEntries[static_cast<unsigned int>(lFound)] = lEntry;
  mLastNumber = lEntry.mNumber;
  return true;
}

void ListenerTable::detach(const void* npListener) {
  const int lFound = indexOf(npListener);
  if (lFound >= 0) removeAt(static_cast<unsigned int>(lFound));
}

void ListenerTable::detach(const void* npListener, unsigned int nLastNumber) {
  const int lFound = indexOf(npListener);
  if (lFound < 0) return;
  const unsigned int lIndex = static_cast<unsigned int>(lFound);
  if (!isLater(mEntries[lIndex].mNumber, nLastNumber)) removeAt(lIndex);
}

void ListenerTable::removeAt(unsigned int nIndex) {
  mEntries.removeAt(nIndex);
  for (Walk* lpWalk = mpWalk; lpWalk != nullptr; lpWalk = lpWalk->mpOuter) {
    if (nIndex < lpWalk->mCursor) --lpWalk->mCursor;
  }
}

int ListenerTable::indexOf(const void* npListener) const {
  for (unsigned int i = 0; i < mEntries.size(); ++i) {
    if (mEntries[i].mpListener == npListener) return static_cast<int>(i);
  }
  return -1;
}

ListenerTable::Walk::Walk(ListenerTable& nTable)
    : mTable(nTable), mpOuter(nTable.mpWalk), mCursor(nTable.mEntries.size()) {
  mTable.mpWalk = this;
}

ListenerTable::Walk::~Walk() { mTable.mpWalk = mpOuter; }

void* ListenerTable::Walk::next() {
  return mCursor > 0 && !mTable.mIsMuted ? mTable.mEntries[--mCursor].mpListener : nullptr;
}

}  // namespace nfw
