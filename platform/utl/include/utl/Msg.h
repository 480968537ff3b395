/// @file
/// Messages of threads, and who receives them.
#pragma once

#include "utl/MsgDataBroker.h"

namespace utl {

/// A thread message, carried by value: the thread stores the fields with storeDataTo and the receiver rebuilds them
/// with restoreFrom. A message owns nothing; a pointer in it points to something that outlives it.
///
/// A message with fields is a class of its own; one without is its id alone.
/// @code
/// const int SPEED = 1;
///
/// class SpeedMsg : public utl::Msg {
///  public:
///   explicit SpeedMsg(int nSpeed = 0) : utl::Msg(SPEED), mSpeed(nSpeed) {}
///   bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return nBroker.write(mSpeed); }
///   bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return nBroker.read(&mSpeed); }
///
///   int32_t mSpeed;
/// };
/// @endcode
///
/// Ids: an application's listener chooses its own, 1 and up; it receives no others but 0x80000002, that of TimerMsg.
/// From 0x80000000 up they are the library's.
///
/// Threads: stored on the thread that posts, restored on the one that handles, without a lock held.
class Msg {
 public:
  explicit Msg(int nMsgId) : mMsgId(nMsgId) {}
  virtual ~Msg() = default;

  int getMsgId() const { return mMsgId; }

  /// Both go through the fields in the same order; by default there are none.
  /// @return false ends it: a message that is not stored is not posted, and a restored one is to be dropped
  virtual bool storeDataTo(MsgDataBroker& /*nBroker*/) const { return true; }
  virtual bool restoreDataFrom(MsgDataBroker& /*nBroker*/) { return true; }

  /// Fills this object from the first field on, however often it is called. False when data is short.
  bool restoreFrom(MsgDataBroker& nBroker) { return nBroker.beginOutput() && restoreDataFrom(nBroker); }

 private:
  int mMsgId;
};

/// The queued form of a message, valid during the call that hands it out. Not made by applications.
class ThreadRawMsg : public MsgDataBroker {
 public:
  /// False when there is no id; `*npMsgId` then keeps its value.
  virtual bool getMsgId(int* npMsgId) const = 0;
};

/// Tells that a timer expired. Restored like any other message, to see which timer it was.
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

/// Receives messages.
///
/// @code
/// void Display::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
///   int lMsgId = 0;
///   SpeedMsg lSpeed;
///   if (!nMsg.getMsgId(&lMsgId)) return;
///   if (lMsgId == SPEED && lSpeed.restoreFrom(nMsg)) show(lSpeed.mSpeed);
/// }
/// @endcode
///
/// Threads: called one at a time on each thread that delivers to it, without a lock. It may post, set timers and erase
/// messages; it does not send to its own thread nor wait for it. What is posted meanwhile waits until it returns, so it
/// does not block.
class ThreadMsgListener {
 public:
  virtual ~ThreadMsgListener() = default;
  /// @param nThreadId the Thread::getId() of the thread that delivers
  /// @param nMsg valid during the call
  virtual void receiveMsg(int nThreadId, ThreadRawMsg& nMsg) = 0;
};

}  // namespace utl
