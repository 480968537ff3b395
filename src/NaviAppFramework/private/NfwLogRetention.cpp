#include "NfwLogRetention.h"

#include <new>

#include "NfwThreadSafety.h"
#include "RetentionSweep.h"
#include "ServiceThread.h"
#include "Watched.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {
namespace {

const unsigned int INTERVAL_MS = 1000;
const unsigned int QUEUE_LENGTH = 4;
const unsigned int MSG_SIZE = 16;  // the timer's

}  // namespace

/// Shared with its thread, which may outlive the object in a medium that does not answer.
struct LogRetention::Inside : public utl::ThreadMsgListener {
  explicit Inside(const LogRetentionLimits& nLimits)
      : mSweep(nLimits), mThread(MSG_SIZE, QUEUE_LENGTH, "nfw::LogRetention_Thread", 1) {}

  bool apply() {
    LogRetentionCounts lCounts;
    {
      const WatchedLock lLock(mSync);
      lCounts = mCounts;
    }
    const bool lIsDone = mSweep.run(&lCounts);
    const WatchedLock lLock(mSync);
    mCounts = lCounts;
    return lIsDone;
  }
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& /*nMsg*/) override { apply(); }

  bool mHasFiles = false;
  RetentionSweep mSweep;  // on the thread while it runs
  ZTSync mSync{"nfw::LogRetention"};
  LogRetentionCounts mCounts NFW_GUARDED_BY(mSync);
  utl::MsgDrivenThread mThread;
  ServiceThreadEnd mThreadEnd;
};

LogRetention::LogRetention(const char* npDirectory, const char* npFilePrefix, const LogRetentionLimits& nLimits)
    : mpInside(new Inside(nLimits)) {
  mpInside->mHasFiles = mpInside->mSweep.setFiles(npDirectory, npFilePrefix);
}

LogRetention::~LogRetention() {
  if (!mpInside->mThreadEnd.isOver(mpInside->mThread)) static_cast<void>(mpInside.release());
}

bool LogRetention::start() {
  Inside& lInside = *mpInside;
  if (!lInside.mHasFiles || lInside.mThread.isRunning() || !startThread(lInside.mThread, &lInside)) return false;
  if (lInside.mThread.setTimer(1, 1, 0) != -1 && lInside.mThread.setTimer(INTERVAL_MS, 0, 0) != -1) return true;
  stop();
  return false;
}

void LogRetention::stop() { mpInside->mThreadEnd.stop(mpInside->mThread); }

bool LogRetention::apply() { return mpInside->mHasFiles && !mpInside->mThread.isRunning() && mpInside->apply(); }

LogRetentionCounts LogRetention::getCounts() const {
  const WatchedLock lLock(mpInside->mSync);
  return mpInside->mCounts;
}

}  // namespace nfw
