#include "RecordingComponent.h"

#include "NfwLogger.h"
#include "NfwSensorSysLogger.h"

namespace drive {

int RecordingComponent::initializeBeforeQuickBootImp() {
  if (nfw::Logger::get()->initialize() && nfw::SensorSysLogger::get()->initialize()) return nfw::PHASE_DONE;
  mFailure.note(EXIT_RUNTIME, "the logs cannot be started");
  return nfw::PHASE_FAILED;
}

// The recordings run before anything comes that they are to hold.
int RecordingComponent::initializeAfterQuickBootImp() {
  if (!initializeThread(&mThread)) return nfw::PHASE_FAILED;
  if (mRecord.isWanted()) mTimerId = setTimer(WATCH_MS, 0, 0, 0);
  if (mRecorder.start([this] { setInitializeComplete(); })) return nfw::PHASE_PENDING;
  mFailure.note(EXIT_RUNTIME, "no thread to record on");
  return nfw::PHASE_FAILED;
}

int RecordingComponent::finalizeImp() {
  if (mTimerId > 0) killTimer(mTimerId, 1);
  mRecorder.finish();
  return nfw::PHASE_DONE;
}

}  // namespace drive
