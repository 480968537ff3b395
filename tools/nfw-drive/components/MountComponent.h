#pragma once

#include <string>

#include "NfwComponent.h"
#include "NfwMountEventListener.h"
#include "Recorder.h"

namespace drive {

/// Watches storage devices and tells of them in the log. Recording goes onto the device of one drive as soon as that is
/// mounted, and ends when it goes.
class MountComponent : public nfw::Component, private nfw::MountEventListener {
 public:
  /// @param nDrive empty: nothing is recorded
  MountComponent(const std::string& nDrive, Recorder& nRecorder)
      : nfw::Component("Mount"), mDrive(nDrive), mRecorder(nRecorder) {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override;
  int startImp() override;
  int stopImp() override;
  int shutdownImp() override;
  void notifyMountEvent(nfw::MountEventMsg const& nEvent) override;

  const std::string mDrive;
  Recorder& mRecorder;
  bool mIsRecording = false;  // on the mount manager's thread
};

}  // namespace drive
