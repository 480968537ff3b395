#pragma once

#include "utl/MsgDataBroker.h"

namespace utl {

/// A thread message, carried by value: the thread stores the fields with storeDataTo and the receiver rebuilds them
/// with restoreFrom. A message owns nothing; a pointer in it points to something that outlives it.
class Msg {
 public:
  explicit Msg(int nMsgId) : mMsgId(nMsgId) {}
  virtual ~Msg() = default;

  int getMsgId() const { return mMsgId; }

  /// Both go through the fields in the same order; by default there are none.
  virtual bool storeDataTo(MsgDataBroker& /*nBroker*/) const { return true; }
  virtual bool restoreDataFrom(MsgDataBroker& /*nBroker*/) { return true; }

  /// Fills this object from the first field on, however often it is called. False when data is short.
  bool restoreFrom(MsgDataBroker& nBroker) { return nBroker.beginOutput() && restoreDataFrom(nBroker); }

 private:
  int mMsgId;
};

/// The queued form of a message, valid during the call that hands it out.
class ThreadRawMsg : public MsgDataBroker {
 public:
  /// False when there is no id; `*npMsgId` then keeps its value.
  virtual bool getMsgId(int* npMsgId) const = 0;
};

/// Tells that a timer expired.
class TimerMsg : public Msg {
 public:
  static constexpr int MSG_ID = static_cast<int>(0x80000002u);

  TimerMsg() : Msg(MSG_ID) {}

  int getTimerId() const { return mTimerId; }
  unsigned int getParam() const { return mParam; }  ///< what was given to setTimer

  bool storeDataTo(MsgDataBroker& nBroker) const override { return nBroker.write(mTimerId) && nBroker.write(mParam); }
  bool restoreDataFrom(MsgDataBroker& nBroker) override { return nBroker.read(&mTimerId) && nBroker.read(&mParam); }

 protected:
  TimerMsg(int nTimerId, unsigned int nParam) : Msg(MSG_ID), mTimerId(nTimerId), mParam(nParam) {}

 private:
  int32_t mTimerId = -1;
  uint32_t mParam = 0;
};

/// Receives messages, one at a time per thread. `nThreadId` tells which thread delivers.
class ThreadMsgListener {
 public:
  virtual ~ThreadMsgListener() = default;
  virtual void receiveMsg(int nThreadId, ThreadRawMsg& nMsg) = 0;
};

}  // namespace utl
