// What encodes must decode, and encode again to the same bytes. Three kinds of records need not, by the rules of the
// format: a talker that holds a separator makes another address of itself, a negative time is filled with "0" before
// its sign, and a fix mode above 15 spills into the selection, which then has no letter.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "BinaryLog.h"
#include "NfwAppLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"

using binarylog::Bytes;
using binarylog::Converter;

namespace {

const unsigned int GSA = 3;
const unsigned int PUBX = 8;

bool isBound(const Bytes& nRecord) {
  const unsigned int lKind = nRecord[0];
  const auto lIsSeparator = [](unsigned char nByte) { return nByte == ',' || nByte == '*'; };
  const bool lHasTime = lKind != 3 && lKind != 4 && lKind != 6;
  const size_t lSignByte = lKind == PUBX ? 11 : 7;
  return !std::any_of(nRecord.begin() + 1, nRecord.begin() + 3, lIsSeparator) &&
         !(lHasTime && (nRecord[lSignByte] & 0x80U) != 0) && !(lKind == GSA && nRecord[3] >> 4 > 2);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*npArgCount*/, char*** /*npppArgs*/) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "fuzz", nfw::LOG_LEVEL_NONE);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  static nfw::NmeaBinaryLogDataVersion0 gVersion0;
  static nfw::NmeaBinaryLogDataVersion1 gVersion1;
  const std::string lSentence(reinterpret_cast<const char*>(npData), nSize);
  for (Converter* lpVersion : {&gVersion0, static_cast<Converter*>(&gVersion1)}) {
    const Bytes lRecord = binarylog::encode(*lpVersion, lSentence);
    if (lRecord.empty()) continue;
    const std::string lText = binarylog::decode(*lpVersion, lRecord);
    if (lText.empty()) abort();
    if (isBound(lRecord) && binarylog::encode(*lpVersion, lText) != lRecord) abort();
  }
  return 0;
}
