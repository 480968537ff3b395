#pragma once

#include "NfwDeadReckoningNmeaDataListener.h"
#include "SharedView.h"
#include "Window.h"

namespace drive {

/// Shows and counts the sentences of dead reckoning, and gives each report's place in the window back. On the service's
/// thread.
class DeadReckoningListener : public nfw::DeadReckoningNmeaDataListener {
 public:
  /// @param npWindow null when nobody waits for places
  DeadReckoningListener(SharedView& nView, tool::Window* npWindow, Progress& nProgress)
      : mView(nView), mpWindow(npWindow), mProgress(nProgress) {}

  bool attach();
  void detach();

  void onNotifyDeadReckoningNmeaData(const unsigned char* npData, unsigned int nSize) override;

 private:
  SharedView& mView;
  tool::Window* const mpWindow;
  Progress& mProgress;
};

}  // namespace drive
