// Arbitrary bytes as a sentence for every encoder of both versions: nothing is read or written beyond the buffers, and
// a record is never longer than its buffer.
#include <cstdlib>
#include <cstring>

#include "BinaryLog.h"
#include "NfwAppLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"

using binarylog::Converter;

namespace {

const binarylog::Operation ENCODERS[] = {
    &Converter::convertFromNmeaSentence, &Converter::convertFromGgaSentence, &Converter::convertFromGllSentence,
    &Converter::convertFromGsaSentence,  &Converter::convertFromGsvSentence, &Converter::convertFromRmcSentence,
    &Converter::convertFromVtgSentence,  &Converter::convertFromZdaSentence, &Converter::convertFromPubxSentence};

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*npArgCount*/, char*** /*npppArgs*/) {
  nfw::registerLogType(nfw::LOG_TYPE_NFW, "fuzz", nfw::LOG_LEVEL_NONE);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  static nfw::NmeaBinaryLogDataVersion0 gVersion0;
  static nfw::NmeaBinaryLogDataVersion1 gVersion1;
  if (nSize == 0) return 0;
  const binarylog::Bytes lSentence(npData + 1, npData + nSize);
  for (Converter* lpVersion : {&gVersion0, static_cast<Converter*>(&gVersion1)}) {
    for (const binarylog::Operation lEncoder : ENCODERS) {
      for (const unsigned int lRoom : {60U, npData[0] % 60U}) {
        if (binarylog::run(*lpVersion, lEncoder, lSentence, lRoom).size() > lRoom) abort();
      }
    }
  }
  return 0;
}
