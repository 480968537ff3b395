// What the fuzzers of the binary log share: silence, and both versions.
#pragma once

#include <cstddef>

#include "BinaryLog.h"
#include "NfwAppLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"

extern "C" int LLVMFuzzerInitialize(int* /*npArgCount*/, char*** /*npppArgs*/) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "fuzz", nfw::LOG_LEVEL_NONE);
  return 0;
}

template <class Use>
void forEachVersion(Use nUse) {
  static nfw::NmeaBinaryLogDataVersion0 gVersion0;
  static nfw::NmeaBinaryLogDataVersion1 gVersion1;
  nUse(gVersion0);
  nUse(gVersion1);
}
