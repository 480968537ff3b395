#pragma once

#include "Failure.h"
#include "NfwSharedThreadComponent.h"
#include "Progress.h"

namespace drive {

/// Runs both logs, and records into them from the start to the end of the run, or while a stick is there.
class RecordingComponent : public nfw::SharedThreadComponent {
 public:
  RecordingComponent(const Options& nOptions, utl::MsgDrivenSharedThread& nThread, Progress& nProgress,
                     Failure& nFailure)
      : nfw::SharedThreadComponent("Recording"),
        mRecord(nOptions.mRecord),
        mThread(nThread),
        mProgress(nProgress),
        mFailure(nFailure) {}

  /// Records below a directory that has just appeared, and stops because it goes. Any thread.
  void beginIn(const std::string& nDirectory);
  void endIn();

 private:
  int initializeBeforeQuickBootImp() override;
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  int finalizeImp() override;
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

  bool startLog();
  bool startSensorLog();
  void writeEndNotes();

  static constexpr unsigned int FLUSH_MS = 1000;  // what a killed process loses at most
  const RecordOptions& mRecord;
  utl::MsgDrivenSharedThread& mThread;
  Progress& mProgress;
  Failure& mFailure;
  int mTimerId = -1;
};

}  // namespace drive
