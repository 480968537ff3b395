/// @file
/// Who is told that a phase is complete.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Each operation is called once, on the application's shared thread, when every component has completed the phase. The
/// manager may be called, and in onFinalizeComplete() it may be deleted.
class NFW_API ComponentStatusListener {
 public:
  virtual ~ComponentStatusListener() = default;
  virtual void onPreQuickBootComplete() = 0;
  virtual void onInitializeComplete() = 0;
  virtual void onStartComplete() = 0;
  virtual void onStopComplete() = 0;
  virtual void onShutdownComplete() = 0;
  virtual void onFinalizeComplete() = 0;
};

}  // namespace nfw
