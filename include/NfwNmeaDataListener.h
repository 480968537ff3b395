/// @file
/// Who receives sentences as they came.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Called on the dispatcher's shared thread; the bytes, not terminated, are valid during the call. A listener is not
/// owned; it may attach and detach itself and others inside the call.
class NFW_API NmeaDataListener {
 public:
  virtual ~NmeaDataListener() = default;
  virtual void onNotifyNmeaData(unsigned char const* npData, unsigned int nSize) = 0;
};

}  // namespace nfw
