// Starting and stopping the thread of a service, with the lines that every service writes.
#pragma once

#include <atomic>

#include "NfwAppLog.h"
#include "Watched.h"
#include "utl/MsgDrivenSharedThread.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

const unsigned int THREAD_START_TIMEOUT_MS = 10000;
const unsigned int THREAD_STOP_TIMEOUT_MS = 30000;
const int THREAD_PRIORITY = 3;

inline bool reportThreadStart(int nResult, const char* npName) {
  if (nResult == 0) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Thread Start[%s]", npName);
  return false;
}

inline bool startThread(utl::MsgDrivenThread& nThread, utl::ThreadMsgListener* npListener,
                        int nPriority = THREAD_PRIORITY, const Here& nHere = Here::now()) {
  const WatchedStep lStep(nHere);
  return reportThreadStart(
      nThread.start(npListener, 1, THREAD_START_TIMEOUT_MS, nullptr, 1, 0, utl::ThreadPriority(nPriority), 0),
      nThread.getName());
}

inline bool startThread(utl::MsgDrivenSharedThread& nThread, const Here& nHere = Here::now()) {
  const WatchedStep lStep(nHere);
  return reportThreadStart(
      nThread.start(1, THREAD_START_TIMEOUT_MS, nullptr, 1, 0, utl::ThreadPriority(THREAD_PRIORITY), 0),
      nThread.getName());
}

/// Stops a running thread of either class. `npTimeoutWord` is "Timeout" or "TIMEOUT": services differ in it. False when
/// the time was not enough: what the thread uses has to stay.
template <class Thread>
bool stopThread(Thread& nThread, const Here& nHere = Here::now(), const char* npTimeoutWord = "Timeout") {
  if (!nThread.isRunning()) return true;
  const int lResult = watched([&nThread] { return nThread.stop(1, THREAD_STOP_TIMEOUT_MS); }, nHere);
  if (lResult == -1) APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Thread Stop NG [%s]", nThread.getName());
  if (lResult == -2) APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Thread Stop %s [%s]", npTimeoutWord, nThread.getName());
  return lResult != -2;
}

/// How a service's thread ends. One that is stuck in a callback is waited for once: after that its service is left
/// behind rather than deleted under it.
class ServiceThreadEnd {
 public:
  /// What a shutdown does.
  template <class Thread>
  void stop(Thread& nThread, const Here& nHere = Here::now(), const char* npTimeoutWord = "Timeout") {
    mIsLate = !stopThread(nThread, nHere, npTimeoutWord);
  }
  /// Before the service is deleted: stops the thread where a shutdown has not, as from within. False when it runs on.
  template <class Thread>
  bool isOver(Thread& nThread, const Here& nHere = Here::now(), const char* npTimeoutWord = "Timeout") {
    if (!mIsLate) stop(nThread, nHere, npTimeoutWord);
    return !nThread.isRunning();
  }

 private:
  std::atomic<bool> mIsLate{false};
};

}  // namespace nfw
