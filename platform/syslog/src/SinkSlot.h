// The place of the host's sink.
#pragma once

#include <atomic>
#include <mutex>

#include "SysLogServiceHost.h"

namespace syslogservice {

/// Any number of threads write through the sink at once and without a lock; an exchange waits for those inside the old
/// one. Writers count themselves in under one of two epochs. The exchange turns the epoch over and waits for the one
/// before to empty, twice, so that it has seen both empty while writers that come meanwhile cannot hold it up.
class SinkSlot {
 public:
  bool write(int nType, int nLevel, const char* npText);  ///< false when there is no sink
  Sink* exchange(Sink* npSink);

 private:
  std::mutex mExchange;
  std::atomic<Sink*> mpSink{nullptr};
  std::atomic<unsigned int> mEpoch{0};
  std::atomic<unsigned int> mInside[2] = {};
};

}  // namespace syslogservice
