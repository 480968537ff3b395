/// @file
/// Who receives an RMC sentence, parsed.
#pragma once

#include "NfwExport.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Called on the dispatcher's shared thread; the record is valid during the call. A listener is not owned; it may
/// attach and detach itself and others inside the call.
class NFW_API ParsedRmcDataListener {
 public:
  virtual ~ParsedRmcDataListener() = default;
  virtual void onNotifyParsedRmcData(const RmcSentence& nRecord) = 0;
};

}  // namespace nfw
