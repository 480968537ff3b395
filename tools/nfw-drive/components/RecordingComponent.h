#pragma once

#include "NfwSharedThreadComponent.h"
#include "Recorder.h"

namespace drive {

/// Runs both logs, and records into them from before the start to the end of the run, or while a stick is there.
class RecordingComponent : public nfw::SharedThreadComponent {
 public:
  RecordingComponent(const RecordOptions& nRecord, utl::MsgDrivenSharedThread& nThread, Recorder& nRecorder,
                     Failure& nFailure)
      : nfw::SharedThreadComponent("Recording"),
        mRecord(nRecord),
        mThread(nThread),
        mRecorder(nRecorder),
        mFailure(nFailure) {}

 private:
  int initializeBeforeQuickBootImp() override;
  int initializeAfterQuickBootImp() override;
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  int finalizeImp() override;
  void receiveMsg(int, utl::ThreadRawMsg&) override { mRecorder.watch(); }

  static constexpr unsigned int WATCH_MS = 1000;
  const RecordOptions& mRecord;
  utl::MsgDrivenSharedThread& mThread;
  Recorder& mRecorder;
  Failure& mFailure;
  int mTimerId = -1;
};

}  // namespace drive
