// Arbitrary bytes as a record, of a sentence and of a dead-reckoning report, in both versions: nothing is read or
// written beyond the buffers, and what a set says of itself is true.
#include "BinaryLogFuzz.h"

using binarylog::Converter;

namespace {

void checkSet(Converter& nVersion, const binarylog::Bytes& nRecord) {
  static nfw::DeadReckoningNmeaSentence gSet;
  if (!nVersion.convertToDeadReckoningNmeaSentence(nRecord.data(), static_cast<unsigned int>(nRecord.size()), &gSet))
    return;
  require(gSet.mGsaCount <= gSet.MAX_GSA && gSet.mGsvCount <= gSet.MAX_GSV);
  for (const auto* lpSlot : {&gSet.mRmc, &gSet.mVtg, &gSet.mGga, &gSet.mPubx}) {
    require(lpSlot->mLength > 0 && lpSlot->mLength <= lpSlot->MAX_TEXT);
  }
  for (unsigned int i = 0; i < gSet.MAX_GSV; ++i) require((gSet.mGsv[i].mLength != 0) == (i < gSet.mGsvCount));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* npData, size_t nSize) {
  if (nSize == 0) return 0;
  const binarylog::Bytes lRecord(npData + 1, npData + nSize);
  forEachVersion([&](Converter& nVersion) {
    const auto lText = binarylog::run(nVersion, &Converter::convertToNmeaSentence, lRecord, 256);
    const auto lCut = binarylog::run(nVersion, &Converter::convertToNmeaSentence, lRecord, npData[0]);
    require(lCut.empty() || lCut == lText);
    require(lText.empty() || (lText[0] == '$' && lText.back() == '\n'));
    checkSet(nVersion, lRecord);
  });
  return 0;
}
