// A dispatcher of one kind of record.
#pragma once

#include "DispatcherCore.h"
#include "FieldMsg.h"
#include "RecordFields.h"

namespace nfw {

/// How a record goes through the queue: field by field, a sky without the satellites behind the last one in use. Where
/// the message ends the rest of the sky is as in a new record.
namespace travel {

inline bool isInUse(const GsvSatelliteInfo& n) {
  return (n.satelliteId | n.azimuth) != 0 || (n.satelliteNumber | n.elevation | n.snr) != 0 || n.valid;
}

template <class Record>
bool store(const Record& nRecord, utl::MsgDataBroker& nBroker) {
  const fields::Store lStore{nBroker};
  if constexpr (HAS_SKY<Record>) {
    if (!RecordFields<Record>::eachBeforeSky(nRecord, lStore)) return false;
    const auto& lSky = RecordFields<Record>::sky(nRecord);
    unsigned int lNum = GsvSentence::SATELLITE_NUM;
    while (lNum > 0 && !isInUse(lSky[lNum - 1])) --lNum;
    for (unsigned int i = 0; i < lNum; ++i) {
      if (!eachField(lSky[i], lStore)) return false;
    }
    return true;
  } else {
    return eachField(nRecord, lStore);
  }
}

/// Into a new record.
template <class Record>
bool restore(Record& nRecord, utl::MsgDataBroker& nBroker) {
  const fields::Restore lRestore{nBroker};
  if constexpr (HAS_SKY<Record>) {
    if (!RecordFields<Record>::eachBeforeSky(nRecord, lRestore)) return false;
    for (GsvSatelliteInfo& lSatellite : RecordFields<Record>::sky(nRecord)) {
      if (!eachField(lSatellite, lRestore)) break;
    }
    return true;
  } else {
    return eachField(nRecord, lRestore);
  }
}

}  // namespace travel

/// What a record arrives in on the shared thread.
template <class Record>
class DispatchMsg : public utl::Msg {
 public:
  static constexpr const char* NAME = "DispatchMsg";
  DispatchMsg() : utl::Msg(RESTORE_MSG_ID) {}
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override { return travel::restore(mRecord, nBroker); }

  Record mRecord;
};

/// Copies a record into the queue from where it lies.
template <class Record>
class DispatchedMsg : public utl::Msg {
 public:
  explicit DispatchedMsg(const Record& nRecord) : utl::Msg(DISPATCHER_DISPATCH), mRecord(nRecord) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return travel::store(mRecord, nBroker); }

 private:
  const Record& mRecord;
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

  void queue(const Record& nRecord, const Here& nHere) { post(DispatchedMsg<Record>(nRecord), nHere); }

 private:
  void onDispatch(utl::ThreadRawMsg& nMsg) override {
    DispatchMsg<Record> lMsg;
    if (!lMsg.restoreFrom(nMsg)) return;
    ListenerTable::Walk lWalk(mListeners);
    while (void* const lpListener = lWalk.next()) (static_cast<Listener*>(lpListener)->*NOTIFY)(lMsg.mRecord);
  }
};

}  // namespace nfw
