#include "SensorContent.h"

#include "NfwNmeaSentence.h"
#include "RecordFormat.h"
#include "RecordText.h"

namespace tool {

namespace {

const int LAST_VERSION = 1;

// Bytes of a sentence's record, without the byte of its kind.
const size_t RMC_SIZE = 30, VTG_SIZE = 19, GGA_SIZE = 31, GLL_SIZE = 15, ZDA_SIZE = 9, PUBX_SIZE = 58;
const size_t GSV_BASE = 5;

unsigned int byteAt(std::string_view nData, size_t nAt) { return static_cast<unsigned char>(nData[nAt]); }

size_t gsaSize(int nVersion) { return nVersion == 0 ? 28 : 40; }

// 0 when the record is too short to say.
size_t gsvSize(int nVersion, std::string_view nData) {
  if (nData.size() < GSV_BASE) return 0;
  const unsigned int lCount = byteAt(nData, 2);
  const unsigned int lNumber = byteAt(nData, 3);
  const unsigned int lView = byteAt(nData, 4);
  if (lView == 0 || lNumber > lCount) return GSV_BASE;
  const size_t lBlocks = lNumber < lCount || lView % 4 == 0 ? 4 : lView % 4;
  return GSV_BASE + lBlocks * (nVersion == 0 ? 6 : 7);
}

size_t sentenceSize(int nVersion, std::string_view nData) {
  switch (byteAt(nData, 0)) {
    case nfw::NMEA_GGA:
      return GGA_SIZE;
    case nfw::NMEA_GLL:
      return GLL_SIZE;
    case nfw::NMEA_GSA:
      return gsaSize(nVersion);
    case nfw::NMEA_GSV:
      return gsvSize(nVersion, nData.substr(1));
    case nfw::NMEA_RMC:
      return RMC_SIZE;
    case nfw::NMEA_VTG:
      return VTG_SIZE;
    case nfw::NMEA_ZDA:
      return ZDA_SIZE;
    case nfw::NMEA_PUBX:
      return PUBX_SIZE;
    default:
      return 0;
  }
}

bool isSentence(int nVersion, std::string_view nData) {
  const size_t lSize = nData.empty() ? 0 : sentenceSize(nVersion, nData);
  return lSize != 0 && nData.size() == lSize + 1;
}

bool isReport(int nVersion, std::string_view nData) {
  size_t lAt = RMC_SIZE + VTG_SIZE + GGA_SIZE;
  if (lAt >= nData.size()) return false;
  lAt += 1 + byteAt(nData, lAt) * gsaSize(nVersion);
  if (lAt >= nData.size()) return false;
  const unsigned int lGsvNum = byteAt(nData, lAt++);
  for (unsigned int i = 0; i < lGsvNum; ++i) {
    const size_t lSize = lAt < nData.size() ? gsvSize(nVersion, nData.substr(lAt)) : 0;
    if (lSize == 0) return false;
    lAt += lSize;
  }
  return lAt + PUBX_SIZE == nData.size();
}

}  // namespace

bool isSensorContent(int nId, int nVersion, std::string_view nData) {
  if (nVersion > LAST_VERSION) return false;
  if (nId == SENSOR_GNSS_ID) return isSentence(nVersion, nData);
  return nId == SENSOR_DEAD_RECKONING_ID && isReport(nVersion, nData);
}

int64_t sensorUtcMs(int nId, std::string_view nData) {
  if (nId == SENSOR_GNSS_ID && !nData.empty() && nData[0] == nfw::NMEA_RMC)
    nData.remove_prefix(1);
  else if (nId != SENSOR_DEAD_RECKONING_ID)
    return -1;
  if (nData.size() < RMC_SIZE) return -1;
  const int64_t lTime = littleEndian32(nData.data() + 3);  // hhmmss.sss in thousandths
  const unsigned int lDay = byteAt(nData, 23), lMonth = byteAt(nData, 24), lYear = byteAt(nData, 25);
  if (lDay == 0 || lMonth == 0 || lMonth > 12 || lTime >= 240000000) return -1;
  const int64_t lMinutes = lTime / 10000000 * 60 + lTime / 100000 % 100;
  return (daysSince1970(2000 + lYear, lMonth, lDay) * 1440 + lMinutes) * 60000 + lTime % 100000;
}

}  // namespace tool
