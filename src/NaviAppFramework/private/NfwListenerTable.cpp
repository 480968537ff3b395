#include "NfwListenerTable.h"

namespace nfw {

bool ListenerTable::attach(void* npListener) { return indexOf(npListener) >= 0 || mEntries.add(npListener); }

void ListenerTable::detach(const void* npListener) {
  const int lFound = indexOf(npListener);
  if (lFound < 0) return;
  const unsigned int lIndex = static_cast<unsigned int>(lFound);
  mEntries.removeAt(lIndex);
  for (Walk* lpWalk = mpWalk; lpWalk != nullptr; lpWalk = lpWalk->mpOuter) {
    if (lIndex < lpWalk->mCursor) --lpWalk->mCursor;
  }
}

int ListenerTable::indexOf(const void* npListener) const {
  for (unsigned int i = 0; i < mEntries.size(); ++i) {
    if (mEntries[i] == npListener) return static_cast<int>(i);
  }
  return -1;
}

ListenerTable::Walk::Walk(ListenerTable& nTable)
    : mTable(nTable), mpOuter(nTable.mpWalk), mCursor(nTable.mEntries.size()) {
  mTable.mpWalk = this;
}

ListenerTable::Walk::~Walk() { mTable.mpWalk = mpOuter; }

void* ListenerTable::Walk::next() { return mCursor > 0 && !mTable.mIsMuted ? mTable.mEntries[--mCursor] : nullptr; }

}  // namespace nfw
