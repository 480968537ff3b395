// A dispatcher of one kind of record.
#pragma once

#include "DispatcherCore.h"
#include "FieldMsg.h"
#include "RecordFields.h"

namespace nfw {

/// Carries a copy of the record to the shared thread.
template <class Record>
class DispatchMsg : public FieldMsg<DispatchMsg<Record>> {
 public:
  static constexpr const char* NAME = "DispatchMsg";
  DispatchMsg() = default;
  DispatchMsg(int nMsgId, const Record& nRecord) : FieldMsg<DispatchMsg<Record>>(nMsgId), mRecord(nRecord) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mRecord);
  }

  Record mRecord;
};

/// Hands records to listeners by their one operation, NOTIFY. Only what needs the types stands here: the rest is in the
/// core, once for every kind. Each class of a kind says in its own file where its operations stand:
///
/// attachListener() is true also for a null listener and one that is attached already, and false when the thread does
/// not take the request; detachListener() is true when the listener is absent afterwards: after it no callback of it
/// begins; dispatch() queues a copy, and the caller does not wait.
template <class Record, class Listener, void (Listener::*NOTIFY)(const Record&)>
class RecordDispatcher : public DispatcherCore {
 protected:
  using DispatcherCore::DispatcherCore;

  void queue(const Record& nRecord, const Here& nHere) {
    post(DispatchMsg<Record>(DISPATCHER_DISPATCH, nRecord), nHere);
  }

 private:
  void onDispatch(utl::ThreadRawMsg& nMsg) override {
    DispatchMsg<Record> lMsg;
    if (!lMsg.restoreFrom(nMsg)) return;
    ListenerTable::Walk lWalk(mListeners);
    while (void* const lpListener = lWalk.next()) (static_cast<Listener*>(lpListener)->*NOTIFY)(lMsg.mRecord);
  }
};

}  // namespace nfw
