// The converters of every known version of the binary log.
#pragma once

#include "NfwNmeaBinaryLogDataVersion0.h"
#include "NfwNmeaBinaryLogDataVersion1.h"

namespace nfw {

/// What a sensor log player holds: the first converter whose version is the record's serves it.
class Converters {
 public:
  NmeaBinaryLogData* getConverter(unsigned int nVersion) {
    NmeaBinaryLogData* const ALL[] = {&mVersion0, &mVersion1};
    for (NmeaBinaryLogData* lpConverter : ALL) {
      if (lpConverter->getBinaryLogVersion() == nVersion) return lpConverter;
    }
    return nullptr;
  }

 private:
  NmeaBinaryLogDataVersion0 mVersion0;
  NmeaBinaryLogDataVersion1 mVersion1;
};

}  // namespace nfw
