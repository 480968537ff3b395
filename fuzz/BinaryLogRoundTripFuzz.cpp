// Arbitrary bytes as a sentence for every encoder of both versions: nothing is read or written beyond the buffers. What
// encodes must decode, and encode again to the same bytes. Three kinds of records need not, by the rules of the
// format: a talker that holds a separator makes another address of itself, a negative time is filled with "0" before
// its sign, and a fix mode above 15 spills into the selection, which then has no letter.
#include <algorithm>

#include "BinaryLogFuzz.h"

using binarylog::Bytes;
using binarylog::Converter;

namespace {

const unsigned int GSA = 3;
const unsigned int PUBX = 8;

const binarylog::Operation ENCODERS[] = {
    &Converter::convertFromNmeaSentence, &Converter::convertFromGgaSentence, &Converter::convertFromGllSentence,
    &Converter::convertFromGsaSentence,  &Converter::convertFromGsvSentence, &Converter::convertFromRmcSentence,
    &Converter::convertFromVtgSentence,  &Converter::convertFromZdaSentence, &Converter::convertFromPubxSentence};

bool isBound(const Bytes& nRecord) {
  const unsigned int lKind = nRecord[0];
  const auto lIsSeparator = [](unsigned char nByte) { return nByte == ',' || nByte == '*'; };
  const bool lHasTime = lKind != 3 && lKind != 4 && lKind != 6;
  const size_t lSignByte = lKind == PUBX ? 11 : 7;
  return !std::any_of(nRecord.begin() + 1, nRecord.begin() + 3, lIsSeparator) &&
         !(lHasTime && (nRecord[lSignByte] & 0x80U) != 0) && !(lKind == GSA && nRecord[3] >> 4 > 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  const std::string lSentence(reinterpret_cast<const char*>(npData), nSize);
  forEachVersion([&](Converter& nVersion) {
    for (const binarylog::Operation lEncoder : ENCODERS) {
      const unsigned int lRoom = static_cast<unsigned int>(nSize % 61);
      require(binarylog::run(nVersion, lEncoder, binarylog::bytesOf(lSentence), lRoom).size() <= lRoom);
    }
    const Bytes lRecord = binarylog::encode(nVersion, lSentence);
    if (lRecord.empty()) return;
    const std::string lText = binarylog::decode(nVersion, lRecord);
    require(!lText.empty());
    require(!isBound(lRecord) || binarylog::encode(nVersion, lText) == lRecord);
  });
  return 0;
}
