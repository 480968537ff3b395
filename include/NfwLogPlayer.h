/// @file
/// Is told about the replays of the data logger.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Attached to the Logger. Called on the logger's thread, one call at a time, the last attached player first. From
/// inside a call every operation of the Logger but shutdown() and destroy() may be called; no operation of another
/// service that waits for that service.
class NFW_API LogPlayer {
 public:
  /// Why a replay ended.
  enum EndReason {
    END_FINISHED = 0,    ///< the last record was played
    END_NOT_STARTED = 1  ///< nothing could be started
  };

  virtual ~LogPlayer() = default;

  virtual void notifyPlayStart() = 0;  ///< before the first record
  virtual void notifyPlayStop() = 0;   ///< stopPlay(): no record comes any more
  /// Nothing is left to play, told once a replay. The logger counts as playing until stopPlay().
  virtual void notifyPlayEnd(int nReason) = 0;
  /// seekPlay(): the records to come do not follow those before. Nothing by default. After a seek the end is told
  /// again.
  virtual void notifyPlaySeek() {}
};

}  // namespace nfw
