#include "MsgSlots.h"

#include <cstdint>
#include <new>

namespace utl {

namespace {

const unsigned int LARGE = 1024;  // messages up to here find their memory behind the slot
const unsigned int USUAL =
    5 * 64 - sizeof(MsgSlot);  // of a thread with larger ones: a sentence; five cache lines in all

unsigned int smallSizeFor(unsigned int nMsgSize, unsigned int nSlotSize) {
  return std::min(nSlotSize, nMsgSize > LARGE ? USUAL : std::max(nMsgSize, MsgSlots::SMALL));
}

unsigned char* allocate(uint64_t nSize) {
  return nSize <= PTRDIFF_MAX ? new (std::nothrow) unsigned char[static_cast<size_t>(nSize)] : nullptr;
}

}  // namespace

MsgSlots::MsgSlots(unsigned int nNum, unsigned int nMsgSize, unsigned int nSlotSize)
    : mSlotSize(nSlotSize),
      mSmallSize(smallSizeFor(nMsgSize, nSlotSize)),
      mLinesPerSlot((sizeof(MsgSlot) + mSmallSize + sizeof(Line) - 1) / sizeof(Line)),
      mpLines(new Line[nNum * mLinesPerSlot]),
      mNum(nNum),
      mpLarge(mSmallSize < mSlotSize ? allocate(uint64_t{nNum} * mSlotSize) : nullptr) {
  for (unsigned int i = 0; i < nNum; ++i) new (at(static_cast<int>(i))) MsgSlot{};
}

}  // namespace utl
