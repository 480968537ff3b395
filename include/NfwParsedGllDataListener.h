/// @file
/// Who receives a GLL sentence, parsed.
#pragma once

#include "NfwExport.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Called on the dispatcher's shared thread; the record is valid during the call. A listener is not owned; it may
/// attach and detach itself and others inside the call.
class NFW_API ParsedGllDataListener {
 public:
  virtual ~ParsedGllDataListener() = default;
  virtual void onNotifyParsedGllData(const GllSentence& nRecord) = 0;
};

}  // namespace nfw
