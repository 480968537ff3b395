#include "Sentences.h"

#include "NfwAppLog.h"
#include "RecordType.h"
#include "SensorContent.h"

namespace logtool {

namespace {

const unsigned int MAX_SENTENCE = 256;

const unsigned char* bytesOf(std::string_view nText) { return reinterpret_cast<const unsigned char*>(nText.data()); }

bool give(const unsigned char* npText, uint32_t nLength, tool::SentenceSink& nSink) {
  std::string_view lText(reinterpret_cast<const char*>(npText), nLength);
  while (!lText.empty() && (lText.back() == '\n' || lText.back() == '\r')) lText.remove_suffix(1);
  return lText.empty() || nSink.onSentence(lText);
}

bool give(const nfw::NmeaSentenceData& nSlot, tool::SentenceSink& nSink) {
  return give(nSlot.mText, nSlot.mLength, nSink);
}

}  // namespace

// The library says in its log what it cannot decode; here the result says it.
Sentences::Sentences() { nfw::registerLogType(nfw::LOG_TYPE_NFW, "", nfw::LOG_LEVEL_NONE); }

bool Sentences::read(const tool::Record& nRecord, tool::SentenceSink& nSink) {
  if (nRecord.mKind == tool::LOG_RECORD) return readText(nRecord.mData, nSink);
  if (nRecord.mId != tool::SENSOR_GNSS_ID && nRecord.mId != tool::SENSOR_DEAD_RECKONING_ID) return true;
  nfw::NmeaBinaryLogData* const lpConverter = converterFor(nRecord.mVersion);
  if (lpConverter == nullptr) return false;
  if (nRecord.mId == tool::SENSOR_DEAD_RECKONING_ID) return readReport(*lpConverter, nRecord.mData, nSink);
  unsigned char lText[MAX_SENTENCE];
  const int lLength = lpConverter->convertToNmeaSentence(
      bytesOf(nRecord.mData), static_cast<unsigned int>(nRecord.mData.size()), lText, MAX_SENTENCE);
  if (lLength > 0) give(lText, static_cast<uint32_t>(lLength), nSink);
  return lLength >= 0;
}

bool Sentences::readText(std::string_view nData, tool::SentenceSink& nSink) {
  while (!nData.empty()) {
    const size_t lEnd = nData.find('\n');
    const std::string_view lLine = nData.substr(0, lEnd);
    if (!isSentenceText(lLine)) return true;
    give(bytesOf(lLine), static_cast<uint32_t>(lLine.size()), nSink);
    nData.remove_prefix(lEnd == std::string_view::npos ? nData.size() : lEnd + 1);
  }
  return true;
}

bool Sentences::readReport(nfw::NmeaBinaryLogData& nConverter, std::string_view nData, tool::SentenceSink& nSink) {
  if (!nConverter.convertToDeadReckoningNmeaSentence(bytesOf(nData), static_cast<unsigned int>(nData.size()),
                                                     &mReport)) {
    return false;
  }
  bool lGoesOn = give(mReport.mRmc, nSink) && give(mReport.mVtg, nSink) && give(mReport.mGga, nSink);
  for (uint32_t i = 0; lGoesOn && i < mReport.mGsaCount; ++i) lGoesOn = give(mReport.mGsa[i], nSink);
  for (uint32_t i = 0; lGoesOn && i < mReport.mGsvCount; ++i) lGoesOn = give(mReport.mGsv[i], nSink);
  if (lGoesOn) give(mReport.mPubx, nSink);
  return true;
}

nfw::NmeaBinaryLogData* Sentences::converterFor(int nVersion) {
  if (nVersion == 0) return &mVersion0;
  return nVersion == 1 ? &mVersion1 : nullptr;
}

}  // namespace logtool
