/// @file
/// The service SDK of the dead-reckoning sensors.
#pragma once

#include "ZTSDeadReckoningDef.h"

/// Told of location reports, on the SDK's thread.
class ZTSDeadReckoningListener {
 public:
  virtual ~ZTSDeadReckoningListener() = default;
  virtual void onNotifyLocationInfoForTervin(ZTSDeadReckoningDef::DRG_LOCATION_INFO const* /*npInfo*/) {}
};

/// Any thread may add and remove; a removal returns when no callback of that listener runs any more, unless it is
/// called from one.
class ZTSDeadReckoning {
 public:
  static ZTSDeadReckoning* GetInstance();

  bool addListener(ZTSDeadReckoningListener* npListener);
  bool removeListener(ZTSDeadReckoningListener* npListener);

 private:
  ZTSDeadReckoning() = default;
};
