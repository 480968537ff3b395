// The places in which a thread's messages lie from the post to the end of their handling.
#pragma once

#include <algorithm>
#include <memory>

#include "RawMsg.h"

namespace utl {

class SyncWait;

/// A queued message: its bytes and to whom it goes.
struct MsgSlot {
  const unsigned char* mpData;
  unsigned int mSize;
  int mMsgId;
  ThreadMsgListener* mpListener;  // null: the thread's only one
  SyncWait* mpWait;               // a sender that waits for the outcome
  bool mIsChosen;                 // by a judgement, to be erased

  /// Null stands for any listener.
  bool isOf(const ThreadMsgListener* npListener) const { return npListener == nullptr || mpListener == npListener; }
};

/// A fixed number of slots, each with its first bytes in the same cache lines. A slot belongs to who took it. All
/// memory is taken at first, so that no message is lost for want of it; what no message needs is never touched, and so
/// not resident.
class MsgSlots {
 public:
  /// Messages of up to `nMsgSize` bytes are usual, of up to `nSlotSize` possible.
  MsgSlots(unsigned int nNum, unsigned int nMsgSize, unsigned int nSlotSize);

  bool isWhole() const { return mpLarge != nullptr || mSmallSize == mSlotSize; }  ///< whether there was memory for all
  unsigned int num() const { return mNum; }
  unsigned int slotSize() const { return mSlotSize; }
  MsgSlot& operator[](int nIndex) { return *static_cast<MsgSlot*>(at(nIndex)); }
  const MsgSlot& operator[](int nIndex) const { return *static_cast<const MsgSlot*>(at(nIndex)); }

  /// Memory of a slot that the caller has taken, `nSize` bytes or more.
  MsgRoom room(int nIndex, unsigned int nSize) {
    return nSize <= mSmallSize ? MsgRoom{small(nIndex), mSmallSize} : large(nIndex);
  }
  /// Copies so few bytes that they fit behind each slot, SMALL at most. Returns where they lie.
  const unsigned char* copy(int nIndex, const unsigned char* npData, unsigned int nSize) {
    return static_cast<const unsigned char*>(std::memcpy(small(nIndex), npData, nSize));
  }

  /// Has the beginning of a slot brought to this processor while the caller does something else. -1: none.
  void prefetch(int nIndex) const {
    if (nIndex < 0) return;
    const Line* const lpLines = &mpLines[static_cast<unsigned int>(nIndex) * mLinesPerSlot];
    for (size_t i = 0; i < std::min<size_t>(mLinesPerSlot, PREFETCH); ++i) __builtin_prefetch(lpLines + i);
  }

  static constexpr unsigned int SMALL = 128;  // copying so much a second time costs less than setting a slot aside

 private:
  /// Memory in whole cache lines.
  struct alignas(64) Line {
    unsigned char mBytes[64];
  };

  static constexpr unsigned int PREFETCH = 5;  // lines: a sentence and its slot

  void* at(int nIndex) const { return &mpLines[static_cast<unsigned int>(nIndex) * mLinesPerSlot]; }
  unsigned char* small(int nIndex) { return reinterpret_cast<unsigned char*>(&(*this)[nIndex] + 1); }
  MsgRoom large(int nIndex) { return {&mpLarge[static_cast<unsigned int>(nIndex) * size_t{mSlotSize}], mSlotSize}; }

  const unsigned int mSlotSize;
  const unsigned int mSmallSize;  // stands behind each slot
  const size_t mLinesPerSlot;
  std::unique_ptr<Line[]> mpLines;
  const unsigned int mNum;
  std::unique_ptr<unsigned char[]> mpLarge;  // the whole size, for each slot; none where it all stands behind the slot
};

/// A stack of slots: what was freed last, and is warm, is used first. Guarded by its owner's lock.
class SlotStack {
 public:
  explicit SlotStack(unsigned int nRoom) : mpEntries(new int[nRoom]) {}

  unsigned int size() const { return mNum; }
  int pop() { return mpEntries[--mNum]; }
  void push(int nIndex) { mpEntries[mNum++] = nIndex; }
  void pushAll(SlotStack* npFrom) {
    std::copy_n(npFrom->mpEntries.get(), npFrom->mNum, mpEntries.get() + mNum);
    mNum += npFrom->mNum;
    npFrom->mNum = 0;
  }

 private:
  std::unique_ptr<int[]> mpEntries;
  unsigned int mNum = 0;
};

}  // namespace utl
