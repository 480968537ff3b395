/// @file
/// An array.
#pragma once

#include <memory>
#include <new>
#include <utility>

namespace utl {

/// An array that keeps its order. With `nGrow` the capacity is only where it starts, without it is the limit.
/// Memory up to a modest capacity is taken at construction, more when needed; nothing is ever given back before
/// destruction. T is default-constructible; removed places are reset to T(), so that what they held is released.
template <class T>
class Array {
 public:
  Array(unsigned int nCapacity, bool nGrow) : mCapacity(nCapacity), mGrow(nGrow) {
    reserve(nCapacity < FIRST_MAX ? nCapacity : FIRST_MAX);
  }
  Array(const Array&) = delete;
  Array& operator=(const Array&) = delete;

  bool add(const T& nValue) { return insert(mSize, nValue); }  ///< false when full or without memory
  bool insert(unsigned int nIndex, const T& nValue) {
    T lValue = nValue;  // may be one of ours, which the next lines move
    if (nIndex > mSize || !makeRoom()) return false;
    for (unsigned int i = mSize; i > nIndex; --i) mpValues[i] = std::move(mpValues[i - 1]);
    mpValues[nIndex] = std::move(lValue);
    ++mSize;
    return true;
  }
  bool removeAt(unsigned int nIndex) {
    if (nIndex >= mSize) return false;
    for (unsigned int i = nIndex; i + 1 < mSize; ++i) mpValues[i] = std::move(mpValues[i + 1]);
    mpValues[--mSize] = T();
    return true;
  }
  void clear() {
    while (mSize > 0) mpValues[--mSize] = T();
  }
  /// Exchanges contents, capacities included.
  void swap(Array& nOther) {
    std::swap(mpValues, nOther.mpValues);
    std::swap(mReserved, nOther.mReserved);
    std::swap(mSize, nOther.mSize);
    std::swap(mCapacity, nOther.mCapacity);
    std::swap(mGrow, nOther.mGrow);
  }

  T& operator[](unsigned int nIndex) { return mpValues[nIndex]; }
  const T& operator[](unsigned int nIndex) const { return mpValues[nIndex]; }
  unsigned int size() const { return mSize; }
  unsigned int capacity() const { return mCapacity; }

 private:
  static constexpr unsigned int FIRST_MAX = 64;  // a limit may be configured as "any number": do not take it at once

  bool makeRoom() {
    if (mSize < mReserved) return true;
    if (mSize >= mCapacity && !mGrow) return false;
    unsigned int lWanted = mReserved < 8 ? mReserved + 1 : mReserved + mReserved / 2;
    if (!mGrow && lWanted > mCapacity) lWanted = mCapacity;
    if (!reserve(lWanted)) return false;
    if (mCapacity < mReserved) mCapacity = mReserved;
    return true;
  }
  bool reserve(unsigned int nCount) {
    if (nCount <= mReserved) return true;
    std::unique_ptr<T[]> lpValues(new (std::nothrow) T[nCount]());
    if (lpValues == nullptr) return false;
    for (unsigned int i = 0; i < mSize; ++i) lpValues[i] = std::move(mpValues[i]);
    mpValues = std::move(lpValues);
    mReserved = nCount;
    return true;
  }

  std::unique_ptr<T[]> mpValues;
  unsigned int mReserved = 0;
  unsigned int mSize = 0;
  unsigned int mCapacity;
  bool mGrow;
};

}  // namespace utl
