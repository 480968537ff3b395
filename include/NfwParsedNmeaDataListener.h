/// @file
/// Who receives one epoch of all six kinds that every epoch has, parsed.
#pragma once

#include "NfwExport.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Called on the dispatcher's shared thread; the record is valid during the call. A listener is not owned; it may
/// attach and detach itself and others inside the call.
class NFW_API ParsedNmeaDataListener {
 public:
  virtual ~ParsedNmeaDataListener() = default;
  virtual void onNotifyParsedNmeaData(const NmeaSentence& nRecord) = 0;
};

}  // namespace nfw
