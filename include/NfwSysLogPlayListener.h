/// @file
/// Receives the records of a replayed sensor system-log file.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Attached to the SensorSysLoggerManager under one sensor log type id (0 to 15).
///
/// Called on a thread of its own replay, one record at a time, each at its recorded moment. From inside the call,
/// stopPlay() and the detach operations return at once and take effect behind it; the attach operations return false;
/// shutdown() and destroy() must not be called. A listener that takes long delays its own records only.
class NFW_API SysLogPlayListener {
 public:
  virtual ~SysLogPlayListener() = default;

  /// @param nLogVersion format of the data, 0 to 15
  /// @param npData valid during the call; never null, also when `nSize` is 0
  /// @param nSize bytes, at most 1200
  virtual void receiveSysLogPlayData(int nLogTypeId, int nLogVersion, const unsigned char* npData,
                                     unsigned int nSize) = 0;
};

}  // namespace nfw
