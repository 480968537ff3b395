#include "RecordType.h"

#include <algorithm>

#include "NfwAppLog.h"
#include "SensorContent.h"
#include "SentenceKind.h"

namespace logtool {

namespace {

const size_t MAX_ADDRESS = 8;

std::string_view sentenceType(std::string_view nSentence) {
  const auto lIsEnd = [](char nByte) { return nByte == ',' || nByte == '*' || nByte == '\r' || nByte == '\n'; };
  size_t lSize = 0;
  const size_t lMost = std::min(nSentence.size() - 1, MAX_ADDRESS);
  while (lSize < lMost && !lIsEnd(nSentence[1 + lSize])) ++lSize;
  if (lSize == 0 || (lSize == MAX_ADDRESS && nSentence.size() - 1 > MAX_ADDRESS)) return "DATA";
  const std::string_view lAddress = nSentence.substr(1, lSize);
  return lAddress.size() == 5 && lAddress[0] != 'P' ? lAddress.substr(2) : lAddress;
}

std::string_view sensorType(const tool::Record& nRecord) {
  if (nRecord.mId == tool::SENSOR_DEAD_RECKONING_ID) return "DR";
  if (nRecord.mId != tool::SENSOR_GNSS_ID || nRecord.mData.empty()) return "DATA";
  const int lKind = static_cast<unsigned char>(nRecord.mData[0]);
  return lKind >= nfw::NMEA_GGA && lKind < tool::KIND_NUM ? tool::kindName(lKind) : "DATA";
}

}  // namespace

std::string_view recordType(const tool::Record& nRecord) {
  if (nRecord.mKind == tool::SENSOR_RECORD) return sensorType(nRecord);
  if (isSentenceText(nRecord.mData)) return sentenceType(nRecord.mData);
  return nRecord.mId == nfw::APPLOG_LOGGER_ID ? "LOG" : "DATA";
}

}  // namespace logtool
