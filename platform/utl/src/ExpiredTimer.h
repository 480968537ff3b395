// The message of a timer that has expired.
#pragma once

#include "RawMsg.h"
#include "TimerTable.h"

namespace utl {

/// Made when somebody looks at it: timers are queued as such.
class ExpiredTimer {
 public:
  explicit ExpiredTimer(const TimerTable::Expiry& nExpiry) : mSize(store(nExpiry)) {}
  ExpiredTimer(const ExpiredTimer&) = delete;
  ExpiredTimer& operator=(const ExpiredTimer&) = delete;

  RawMsg msg() const { return RawMsg(TimerMsg::MSG_ID, mData, mSize); }

 private:
  class Fields : public TimerMsg {
   public:
    explicit Fields(const TimerTable::Expiry& nExpiry) : TimerMsg(nExpiry.mId, nExpiry.mParam) {}
  };

  unsigned int store(const TimerTable::Expiry& nExpiry) {
    MsgWriter lWriter(mData, sizeof mData);
    lWriter.store(Fields(nExpiry));
    return lWriter.size();
  }

  unsigned char mData[sizeof(int32_t) + sizeof(uint32_t)] = {};
  unsigned int mSize;
};

}  // namespace utl
