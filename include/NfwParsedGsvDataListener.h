/// @file
/// Who receives a GSV sentence, parsed.
#pragma once

#include "NfwExport.h"
#include "NfwNmeaSentence.h"

namespace nfw {

/// Called on the dispatcher's shared thread; the record is valid during the call. A listener is not owned; it may
/// attach and detach itself and others inside the call.
class NFW_API ParsedGsvDataListener {
 public:
  virtual ~ParsedGsvDataListener() = default;
  virtual void onNotifyParsedGsvData(const GsvSentence& nRecord) = 0;
};

}  // namespace nfw
