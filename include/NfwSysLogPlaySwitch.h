/// @file
/// A player of the sensor system log that switches its source.
#pragma once

#include "NfwSysLogPlayer.h"

namespace nfw {

/// Gives the notices of SysLogPlayer names of their own, so that one class can follow both logs; see LogPlaySwitch.
class NFW_API SysLogPlaySwitch : public SysLogPlayer {
 public:
  void notifyPlayStart() final { startSysLogPlay(); }
  void notifyPlayStop() final { stopSysLogPlay(); }
  void notifyPlayEnd() final { receiveSysLogPlayEnd(); }
  void notifyPlaySeek() final { seekSysLogPlay(); }

 protected:
  virtual void startSysLogPlay() = 0;
  virtual void stopSysLogPlay() = 0;
  virtual void receiveSysLogPlayEnd() = 0;
  virtual void seekSysLogPlay() {}  ///< what is gathered of several records begins anew
};

}  // namespace nfw
