#include "SinkSlot.h"

#include <chrono>
#include <thread>

namespace syslogservice {

bool SinkSlot::write(int nType, int nLevel, const char* npText) {
  std::atomic<unsigned int>& lInside = mInside[mEpoch.load() & 1];
  lInside.fetch_add(1);
  Sink* const lpSink = mpSink.load();  // after counting in: an exchange that we do not see then waits for us
  if (lpSink != nullptr) lpSink->writeLine(nType, nLevel, npText);
  lInside.fetch_sub(1);
  return lpSink != nullptr;
}

Sink* SinkSlot::exchange(Sink* npSink) {
  std::lock_guard<std::mutex> lLock(mExchange);
  Sink* const lpBefore = mpSink.exchange(npSink);
  for (int i = 0; i < 2 && lpBefore != nullptr; ++i) {
    const std::atomic<unsigned int>& lInside = mInside[mEpoch.fetch_add(1) & 1];
    while (lInside.load() != 0) std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  return lpBefore;
}

}  // namespace syslogservice
