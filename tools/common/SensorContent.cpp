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

/// Where the time and the date stand in a record; a date at 0 is none.
struct TimePlaces {
  int mKind;
  size_t mTime, mDate;
};
const TimePlaces SENTENCE_TIMES[] = {{nfw::NMEA_GGA, 4, 0},
                                     {nfw::NMEA_GLL, 4, 0},
                                     {nfw::NMEA_RMC, 4, 24},
                                     {nfw::NMEA_ZDA, 3, 7},
                                     {nfw::NMEA_PUBX, 8, 0}};
const TimePlaces REPORT_TIME = {nfw::NMEA_RMC, 3, 23};

const TimePlaces* timePlacesOf(int nId, std::string_view nData) {
  if (nId == SENSOR_DEAD_RECKONING_ID) return &REPORT_TIME;
  if (nId != SENSOR_GNSS_ID || nData.empty()) return nullptr;
  for (const TimePlaces& lPlaces : SENTENCE_TIMES) {
    if (nData[0] == lPlaces.mKind) return &lPlaces;
  }
  return nullptr;
}

// Day, month and year of this century.
int64_t dayAt(std::string_view nData, size_t nAt) {
  if (nAt == 0 || nData.size() < nAt + 3) return -1;
  const unsigned int lDay = byteAt(nData, nAt), lMonth = byteAt(nData, nAt + 1), lYear = byteAt(nData, nAt + 2);
  return lDay == 0 || lMonth == 0 || lMonth > 12 ? -1 : daysSince1970(2000 + lYear, lMonth, lDay);
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

SensorTime sensorTime(int nId, std::string_view nData) {
  SensorTime lTime;
  const TimePlaces* const lpPlaces = timePlacesOf(nId, nData);
  if (lpPlaces == nullptr || nData.size() < lpPlaces->mTime + 4) return lTime;
  const uint32_t lNumber = littleEndian32(nData.data() + lpPlaces->mTime);  // hhmmss.sss in thousandths
  if (lNumber >= 240000000 || lNumber / 100000 % 100 > 59) return lTime;
  lTime.mDay = dayAt(nData, lpPlaces->mDate);
  if (lNumber == 0 && lTime.mDay < 0) return lTime;
  lTime.mTimeOfDay = (int64_t{lNumber} / 10000000 * 60 + lNumber / 100000 % 100) * 60000 + lNumber % 100000;
  return lTime;
}

}  // namespace tool
