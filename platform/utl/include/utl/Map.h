/// @file
/// A sorted map.
#pragma once

#include "utl/Array.h"

namespace utl {

/// A sorted array of keys and values, looked up by binary search. Capacity as in Array. K needs operator<.
template <class K, class V>
class Map {
 public:
  Map(unsigned int nCapacity, bool nGrow) : mEntries(nCapacity, nGrow) {}

  /// False when the key is present, the map is full, or there is no memory.
  bool insert(const K& nKey, const V& nValue) {
    const unsigned int lIndex = lowerBound(nKey);
    if (isKeyAt(lIndex, nKey)) return false;
    return mEntries.insert(lIndex, Entry{nKey, nValue});
  }
  V* find(const K& nKey) {
    const unsigned int lIndex = lowerBound(nKey);
    return isKeyAt(lIndex, nKey) ? &mEntries[lIndex].mValue : nullptr;
  }
  const V* find(const K& nKey) const { return const_cast<Map*>(this)->find(nKey); }
  bool remove(const K& nKey) {
    const unsigned int lIndex = lowerBound(nKey);
    return isKeyAt(lIndex, nKey) && mEntries.removeAt(lIndex);
  }
  void clear() { mEntries.clear(); }

  /// In the order of the keys.
  const K& keyAt(unsigned int nIndex) const { return mEntries[nIndex].mKey; }
  V& valueAt(unsigned int nIndex) { return mEntries[nIndex].mValue; }
  const V& valueAt(unsigned int nIndex) const { return mEntries[nIndex].mValue; }
  unsigned int size() const { return mEntries.size(); }
  unsigned int capacity() const { return mEntries.capacity(); }

 private:
  struct Entry {
    K mKey{};
    V mValue{};
  };

  unsigned int lowerBound(const K& nKey) const {
    unsigned int lLow = 0;
    unsigned int lHigh = mEntries.size();
    while (lLow < lHigh) {
      const unsigned int lMiddle = lLow + (lHigh - lLow) / 2;
      if (mEntries[lMiddle].mKey < nKey) {
        lLow = lMiddle + 1;
      } else {
        lHigh = lMiddle;
      }
    }
    return lLow;
  }
  bool isKeyAt(unsigned int nIndex, const K& nKey) const {
    return nIndex < mEntries.size() && !(nKey < mEntries[nIndex].mKey);
  }

  Array<Entry> mEntries;
};

}  // namespace utl
