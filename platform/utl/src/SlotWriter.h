// How a message gets into a thread's queue.
#pragma once

#include <algorithm>

#include "MsgLoop.h"
#include "RawMsg.h"

namespace utl {

/// Takes the fields of a message before the queue is locked: the first ones on the sender's stack, and those of a
/// message that outgrows it in a slot set aside for it. A slot that was not queued is given back.
class MsgLoop::SlotWriter final : public MsgWriter {
 public:
  SlotWriter(MsgLoop& nLoop, bool nIsSync)
      : MsgWriter(mFirst, std::min(MsgSlots::SMALL, nLoop.mSlots.slotSize())), mLoop(nLoop), mIsSync(nIsSync) {}
  ~SlotWriter() override {
    if (mSlot >= 0) mLoop.giveBack(mSlot);
  }

  int slot() const { return mSlot; }  ///< -1: the data is on the stack
  void queued() { mSlot = -1; }

 protected:
  MsgRoom enlarge(uint64_t nSize) override {
    if (nSize > mLoop.mSlots.slotSize()) return {nullptr, 0};
    if (mSlot < 0) mSlot = mLoop.reserveSlot(mIsSync);
    return mSlot >= 0 ? mLoop.mSlots.room(mSlot, static_cast<unsigned int>(nSize)) : MsgRoom{nullptr, 0};
  }

 private:
  MsgLoop& mLoop;
  const bool mIsSync;
  int mSlot = -1;
  unsigned char mFirst[MsgSlots::SMALL];
};

}  // namespace utl
