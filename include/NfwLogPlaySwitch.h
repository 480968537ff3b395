/// @file
/// A player of the data logger that switches its source.
#pragma once

#include "NfwLogPlayer.h"

namespace nfw {

/// Gives the notices of LogPlayer names of their own, so that one class can follow both logs: deriving from LogPlayer
/// and SysLogPlayer directly would merge their notifyPlayStart() into one.
class NFW_API LogPlaySwitch : public LogPlayer {
 public:
  void notifyPlayStart() final { startLogPlay(); }
  void notifyPlayStop() final { stopLogPlay(); }
  void notifyPlayEnd(int nReason) final { receiveLogPlayEnd(nReason); }
  void notifyPlaySeek() final { seekLogPlay(); }

 protected:
  virtual void startLogPlay() = 0;
  virtual void stopLogPlay() = 0;
  virtual void receiveLogPlayEnd(int nReason) = 0;
  virtual void seekLogPlay() {}  ///< what is gathered of several records begins anew
};

}  // namespace nfw
