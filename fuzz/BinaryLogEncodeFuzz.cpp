// Arbitrary bytes as a sentence for every encoder of both versions: nothing is read or written beyond the buffers, and
// a record is never longer than its buffer.
#include <cstdlib>
#include <cstring>

#include "BinaryLogFuzz.h"

using binarylog::Converter;

namespace {

const binarylog::Operation ENCODERS[] = {
    &Converter::convertFromNmeaSentence, &Converter::convertFromGgaSentence, &Converter::convertFromGllSentence,
    &Converter::convertFromGsaSentence,  &Converter::convertFromGsvSentence, &Converter::convertFromRmcSentence,
    &Converter::convertFromVtgSentence,  &Converter::convertFromZdaSentence, &Converter::convertFromPubxSentence};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  if (nSize == 0) return 0;
  const binarylog::Bytes lSentence(npData + 1, npData + nSize);
  forEachVersion([&](Converter& nVersion) {
    for (const binarylog::Operation lEncoder : ENCODERS) {
      for (const unsigned int lRoom : {60U, npData[0] % 60U}) {
        if (binarylog::run(nVersion, lEncoder, lSentence, lRoom).size() > lRoom) abort();
      }
    }
  });
  return 0;
}
