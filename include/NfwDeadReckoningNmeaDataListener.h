/// @file
/// Who receives dead-reckoning sentences.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Called on the dead-reckoning shared thread, once a sentence of a result: RMC, VTG, GGA, each GSA, each GSV, PUBX.
/// RMC, VTG, GGA and PUBX come also when they are empty (size 0). The text, not terminated, is valid during the call. A
/// listener is not owned; it may attach and detach itself and others inside the call.
class NFW_API DeadReckoningNmeaDataListener {
 public:
  virtual ~DeadReckoningNmeaDataListener() = default;
  virtual void onNotifyDeadReckoningNmeaData(const unsigned char* npData, unsigned int nSize) = 0;
};

}  // namespace nfw
