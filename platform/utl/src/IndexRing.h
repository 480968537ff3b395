// A queue of small numbers that takes no memory while it is used.
#pragma once

#include <memory>

namespace utl {

/// First in, first out. The owner sees to it that there is room.
class IndexRing {
 public:
  explicit IndexRing(unsigned int nCapacity) { reserve(nCapacity); }

  bool empty() const { return mHead == mTail; }
  unsigned int size() const { return mTail - mHead; }
  int at(unsigned int nPosition) const { return mpEntries[(mHead + nPosition) & mMask]; }
  void push(int nEntry) { mpEntries[mTail++ & mMask] = nEntry; }
  int pop() { return mpEntries[mHead++ & mMask]; }

  /// Makes room for this many entries in all, keeping those that are in.
  void reserve(unsigned int nCapacity) {
    unsigned int lRoom = 1;
    while (lRoom < nCapacity) lRoom *= 2;
    if (mpEntries != nullptr && lRoom <= mMask + 1) return;
    std::unique_ptr<int[]> lpEntries(new int[lRoom]);
    const unsigned int lSize = size();
    for (unsigned int i = 0; i < lSize; ++i) lpEntries[i] = at(i);
    mpEntries.swap(lpEntries);
    mMask = lRoom - 1;
    mHead = 0;
    mTail = lSize;
  }

  /// Takes out the entries for which `nDrop` is true; the others keep their order.
  template <class Drop>
  void removeIf(Drop nDrop) {
    unsigned int lKept = mHead;
    for (unsigned int lFrom = mHead; lFrom != mTail; ++lFrom) {
      const int lEntry = mpEntries[lFrom & mMask];
      if (!nDrop(lEntry)) mpEntries[lKept++ & mMask] = lEntry;
    }
    mTail = lKept;
  }

 private:
  std::unique_ptr<int[]> mpEntries;
  unsigned int mMask = 0;  // their number is a power of two
  unsigned int mHead = 0;  // both count up and wrap
  unsigned int mTail = 0;
};

}  // namespace utl
