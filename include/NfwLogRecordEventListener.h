/// @file
/// Is told when the data logger begins and ends a recording.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Attached to the Logger. Called on the logger's thread, the last attached listener first. From inside a call every
/// operation of the Logger but shutdown() and destroy() may be called. A listener attached while a recording runs is
/// not told about its start.
class NFW_API LogRecordEventListener {
 public:
  virtual ~LogRecordEventListener() = default;

  virtual void notifyRecordStart() = 0;
  virtual void notifyRecordStop() = 0;
};

}  // namespace nfw
