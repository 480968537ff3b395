#include "MsgSlots.h"

#include <new>

namespace utl {

namespace {

const unsigned int LARGE = 1024;  // messages up to here find their memory behind the slot

unsigned int smallSizeFor(unsigned int nMsgSize, unsigned int nSlotSize) {
  return std::min(nSlotSize, nMsgSize > LARGE ? MsgSlots::SMALL : std::max(nMsgSize, MsgSlots::SMALL));
}

}  // namespace

MsgSlots::MsgSlots(unsigned int nNum, unsigned int nMsgSize, unsigned int nSlotSize)
    : mSlotSize(nSlotSize),
      mSmallSize(smallSizeFor(nMsgSize, nSlotSize)),
      mLinesPerSlot((sizeof(MsgSlot) + mSmallSize + sizeof(Line) - 1) / sizeof(Line)),
      mpLines(new Line[nNum * mLinesPerSlot]),
      mLarge(nNum) {
  for (unsigned int i = 0; i < nNum; ++i) new (at(static_cast<int>(i))) MsgSlot{};
}

MsgRoom MsgSlots::large(int nIndex) {
  std::unique_ptr<unsigned char[]>& lpLarge = mLarge[static_cast<size_t>(nIndex)];
  if (lpLarge == nullptr) lpLarge.reset(new (std::nothrow) unsigned char[mSlotSize]);
  return {lpLarge.get(), mSlotSize};
}

}  // namespace utl
