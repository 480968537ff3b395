/// @file
/// Receives the records of a replayed log record file.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Attached to the Logger under one log type id.
///
/// Called on a thread of its own replay, one record at a time, each at its recorded moment. From inside the call,
/// Logger::stopPlay() and the detach operations return at once and take effect behind it; the attach operations return
/// false; Logger::shutdown() and destroy() must not be called. A listener that takes long delays its own records only.
class NFW_API LogPlayListener {
 public:
  virtual ~LogPlayListener() = default;

  /// @param npData valid during the call; never null, also when `nSize` is 0
  /// @param nSize bytes
  virtual void receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) = 0;
};

}  // namespace nfw
