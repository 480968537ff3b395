#include "SensorSentences.h"

#include "SensorContent.h"

namespace tool {

namespace {

const unsigned int MAX_TEXT = 256;

const unsigned char* bytesOf(std::string_view nData) { return reinterpret_cast<const unsigned char*>(nData.data()); }

bool giveText(const unsigned char* npText, uint32_t nLength, SentenceSink& nSink) {
  return nLength == 0 || nSink.onSentence({reinterpret_cast<const char*>(npText), nLength});
}

bool giveText(const nfw::NmeaSentenceData& nSlot, SentenceSink& nSink) {
  return giveText(nSlot.mText, nSlot.mLength, nSink);
}

}  // namespace

bool SensorSentences::read(const Record& nRecord, SentenceSink& nSink) {
  if (nRecord.mId != SENSOR_GNSS_ID && nRecord.mId != SENSOR_DEAD_RECKONING_ID) return true;
  nfw::NmeaBinaryLogData* const lpConverter = converterFor(nRecord.mVersion);
  if (lpConverter == nullptr) return false;
  if (nRecord.mId == SENSOR_DEAD_RECKONING_ID) return readReport(*lpConverter, nRecord.mData, nSink);
  unsigned char lText[MAX_TEXT];
  const int lLength = lpConverter->convertToNmeaSentence(
      bytesOf(nRecord.mData), static_cast<unsigned int>(nRecord.mData.size()), lText, MAX_TEXT);
  if (lLength > 0) giveText(lText, static_cast<uint32_t>(lLength), nSink);
  return lLength >= 0;
}

bool SensorSentences::readReport(nfw::NmeaBinaryLogData& nConverter, std::string_view nData, SentenceSink& nSink) {
  if (!nConverter.convertToDeadReckoningNmeaSentence(bytesOf(nData), static_cast<unsigned int>(nData.size()),
                                                     &mReport)) {
    return false;
  }
  give(mReport, nSink);
  return true;
}

void SensorSentences::give(const nfw::DeadReckoningNmeaSentence& nSet, SentenceSink& nSink) {
  bool lGoesOn = giveText(nSet.mRmc, nSink) && giveText(nSet.mVtg, nSink) && giveText(nSet.mGga, nSink);
  for (uint32_t i = 0; lGoesOn && i < nSet.mGsaCount; ++i) lGoesOn = giveText(nSet.mGsa[i], nSink);
  for (uint32_t i = 0; lGoesOn && i < nSet.mGsvCount; ++i) lGoesOn = giveText(nSet.mGsv[i], nSink);
  if (lGoesOn) giveText(nSet.mPubx, nSink);
}

nfw::NmeaBinaryLogData* SensorSentences::converterFor(int nVersion) {
  if (nVersion == 0) return &mVersion0;
  return nVersion == 1 ? &mVersion1 : nullptr;
}

}  // namespace tool
