// Both versions of the binary log, for its fuzzers.
#pragma once

#include "BinaryLog.h"
#include "Fuzz.h"
#include "NfwNmeaBinaryLogDataVersion1.h"

template <class Use>
void forEachVersion(Use nUse) {
  static nfw::NmeaBinaryLogDataVersion0 gVersion0;
  static nfw::NmeaBinaryLogDataVersion1 gVersion1;
  nUse(gVersion0);
  nUse(gVersion1);
}
