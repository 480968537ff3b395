// The least that has to be done to read a sentence: one pass over its characters, written straight down for valid text.
// It gives the same records and verdicts for what receivers send, but no words for what is wrong, no limits for fields
// and sentences, and the right double only for numbers of up to 15 digits.
#pragma once

#include <cstring>

#include "NfwNmeaSentence.h"

namespace straight {

class Text {
 public:
  explicit Text(const char* npNext) : mpNext(npNext) {}
  bool isGood() const { return mIsGood; }
  void require(bool nHolds) { mIsGood = mIsGood && nHolds; }

  void address(const char* npType, nfw::SatelliteType* npSatelliteType) {
    require(strncmp(mpNext + 3, npType, 3) == 0);
    *npSatelliteType = mpNext[0] == '$' && mpNext[1] == 'G' ? talker(mpNext[2]) : nfw::SATELLITE_UNKNOWN;
    mpNext += mIsGood ? 6 : 0;
    end();
  }
  char letter() {
    begin();
    const char lLetter = isEmpty() || *mpNext == '\0' ? '\0' : *mpNext++;
    end();
    return lLetter;
  }
  bool isEmpty() const { return *mpNext == ',' || *mpNext == '*'; }
  uint32_t count(uint32_t nMax = 0xFFFFFFFFu) {
    begin();
    uint64_t lValue = 0;
    while (isDigit()) lValue = lValue * 10 + digit();
    require(lValue <= nMax);
    end();
    return static_cast<uint32_t>(lValue);
  }
  uint32_t number(uint32_t nMax = 0xFFFFFFFFu) {
    require(!isEmpty());
    return count(nMax);
  }
  double real() {
    begin();
    const bool lIsNegative = *mpNext == '-';
    if (lIsNegative) ++mpNext;
    uint64_t lMantissa = 0;
    while (isDigit()) lMantissa = lMantissa * 10 + digit();
    const double lValue = fraction(&lMantissa);
    end();
    return lIsNegative ? -lValue : lValue;
  }
  void time(nfw::GnssSentenceTime* npTime) {
    begin();
    npTime->hour = pair();
    npTime->minute = pair();
    npTime->second = pair();
    uint32_t lMillisecond = 0;
    if (*mpNext == '.') {
      ++mpNext;
      for (int i = 0; i < 3 && isDigit(); ++i) lMillisecond = lMillisecond * 10 + digit();
      while (isDigit()) ++mpNext;
    }
    npTime->millisecond = static_cast<uint16_t>(lMillisecond);
    end();
  }
  void date(nfw::GnssSentenceDate* npDate) {
    begin();
    npDate->day = pair();
    npDate->month = pair();
    npDate->year = 2000u + pair();
    end();
  }
  void coordinate(nfw::GnssSentenceCoordinate* npCoordinate) {
    begin();
    uint64_t lValue = 0;
    while (isDigit()) lValue = lValue * 10 + digit();
    npCoordinate->degree = static_cast<int32_t>(lValue / 100);
    uint64_t lMinute = lValue % 100;
    const char* const lpPoint = mpNext;
    if (*mpNext == '.') {
      for (const char* lpNext = mpNext + 1; lpNext != mpNext + 5 && *lpNext >= '0' && *lpNext <= '9'; ++lpNext) {
        lMinute = lMinute * 10 + static_cast<uint64_t>(*lpNext - '0');
      }
    }
    npCoordinate->value = fraction(&lValue);
    const auto lDigits = mpNext == lpPoint ? 0 : mpNext - lpPoint - 1;
    npCoordinate->minute = static_cast<double>(static_cast<int64_t>(lMinute)) / POWERS[lDigits < 4 ? lDigits : 4];
    end();
    npCoordinate->direction = direction(letter());
  }
  void mode(nfw::AutonomousMethodType* npMode) {
    const char lLetter = letter();
    require(lLetter == 'A' || lLetter == 'D' || lLetter == 'E' || lLetter == 'N');
    *npMode = lLetter == 'A'   ? nfw::MODE_AUTONOMOUS
              : lLetter == 'D' ? nfw::MODE_DIFFERENTIAL
              : lLetter == 'E' ? nfw::MODE_ESTIMATED
                               : nfw::MODE_NOT_VALID;
  }
  void status(nfw::PubxStatus* npStatus) {
    static const char WORDS[] = "NFDRG2G3D2D3RKTT";
    begin();
    for (int i = 0; i < 8; ++i) {
      if (mpNext[0] != WORDS[2 * i] || mpNext[1] != WORDS[2 * i + 1]) continue;
      *npStatus = static_cast<nfw::PubxStatus>(i);
      mpNext += 2;
      end();
      return;
    }
    mIsGood = false;
  }

 private:
  static constexpr double POWERS[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};

  static nfw::SatelliteType talker(char nLetter) {
    return nLetter == 'P'   ? nfw::SATELLITE_GPS
           : nLetter == 'L' ? nfw::SATELLITE_GLONASS
           : nLetter == 'A' ? nfw::SATELLITE_GALILEO
           : nLetter == 'N' ? nfw::SATELLITE_COMBINED
                            : nfw::SATELLITE_OTHER;
  }
  static nfw::CoordinateDirection direction(char nLetter) {
    return nLetter == 'N'   ? nfw::DIRECTION_NORTH
           : nLetter == 'S' ? nfw::DIRECTION_SOUTH
           : nLetter == 'E' ? nfw::DIRECTION_EAST
           : nLetter == 'W' ? nfw::DIRECTION_WEST
                            : nfw::DIRECTION_NONE;
  }
  void begin() { require(mIsMore); }
  void end() {
    if (*mpNext == ',') {
      ++mpNext;
    } else {
      mIsMore = false;
      require(*mpNext == '*' || *mpNext == '\0');
    }
  }
  bool isDigit() const { return *mpNext >= '0' && *mpNext <= '9'; }
  uint32_t digit() { return static_cast<uint32_t>(*mpNext++ - '0'); }
  uint16_t pair() {
    require(isDigit() && mpNext[1] >= '0' && mpNext[1] <= '9');
    if (!mIsGood) return 0;
    const uint32_t lTens = digit();
    return static_cast<uint16_t>(lTens * 10 + digit());
  }
  double fraction(uint64_t* npMantissa) {
    if (*mpNext != '.') return static_cast<double>(static_cast<int64_t>(*npMantissa));
    const char* const lpFirst = ++mpNext;
    while (isDigit()) *npMantissa = *npMantissa * 10 + digit();
    const auto lDigits = mpNext - lpFirst;
    return static_cast<double>(static_cast<int64_t>(*npMantissa)) / POWERS[lDigits < 14 ? lDigits : 14];
  }

  const char* mpNext;
  bool mIsGood = true;
  bool mIsMore = true;
};

inline bool parse(const char* npText, nfw::GgaSentence& nRecord) {
  Text lText(npText);
  lText.address("GGA", &nRecord.satelliteType);
  lText.time(&nRecord.utcTime);
  if (!lText.isGood()) return false;
  lText.coordinate(&nRecord.latitude);
  lText.coordinate(&nRecord.longitude);
  const char lQuality = lText.letter();
  lText.require(lQuality == '\0' || lQuality == '6' || (lQuality >= '0' && lQuality <= '2'));
  nRecord.quality = lQuality == '6'    ? nfw::QUALITY_ESTIMATED
                    : lQuality == '\0' ? nfw::QUALITY_INVALID
                                       : static_cast<nfw::SatelliteQuality>(lQuality - '0');
  if (!lText.isGood()) return false;
  nRecord.satelliteCount = lText.count();
  nRecord.hdop = lText.real();
  nRecord.altitude = lText.real();
  lText.letter();
  nRecord.geoidSeparation = lText.real();
  lText.letter();
  nRecord.dgpsDataAge = lText.count();
  nRecord.dgpsStationId = lText.count();
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::GllSentence& nRecord) {
  Text lText(npText);
  lText.address("GLL", &nRecord.satelliteType);
  lText.coordinate(&nRecord.latitude);
  lText.coordinate(&nRecord.longitude);
  lText.time(&nRecord.utcTime);
  nRecord.status = lText.letter() == 'A';
  lText.mode(&nRecord.mode);
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::GsaSentence& nRecord) {
  nRecord = nfw::GsaSentence();
  Text lText(npText);
  lText.address("GSA", &nRecord.satelliteType);
  const char lSelection = lText.letter();
  const char lMode = lText.letter();
  lText.require((lSelection == 'A' || lSelection == 'M') && lMode >= '1' && lMode <= '3');
  if (!lText.isGood()) return false;
  nRecord.positioningType = lSelection == 'A' ? nfw::POSITIONING_AUTOMATIC : nfw::POSITIONING_MANUAL;
  nRecord.mode = static_cast<nfw::GsaMode>(lMode - '1');
  for (int i = 0; i < 12; ++i) {
    const uint32_t lNumber = lText.count();
    nRecord.satelliteId[i] = lNumber;
    if (lNumber < 256) nRecord.satelliteNumber[i] = static_cast<uint8_t>(lNumber);
  }
  nRecord.pdop = lText.real();
  nRecord.hdop = lText.real();
  nRecord.vdop = lText.real();
  return lText.isGood();
}

inline uint32_t satelliteValue(Text& nText, bool* npValid, uint32_t nMax) {
  if (nText.isEmpty()) *npValid = false;
  return nText.count(nMax);
}

inline bool parse(const char* npText, nfw::GsvSentence& nRecord) {
  Text lText(npText);
  lText.address("GSV", &nRecord.satelliteType);
  nRecord.messageCount = lText.count();
  nRecord.messageNumber = lText.count();
  nRecord.satelliteView = lText.count(nfw::GsvSentence::SATELLITE_NUM);
  const bool lIsLast = nRecord.messageCount <= nRecord.messageNumber;
  const uint32_t lRest = nRecord.messageNumber == 0 ? 0 : nRecord.messageCount * 4 % nRecord.messageNumber;
  const uint32_t MAX_NUM = nfw::GsvSentence::SATELLITE_NUM;
  const uint32_t lNum = !lIsLast ? 4 : lRest < MAX_NUM ? lRest : MAX_NUM;
  for (uint32_t i = 0; i < lNum && lText.isGood(); ++i) {
    nfw::GsvSatelliteInfo& lInfo = nRecord.satellite[i];
    bool lIsValid = true;
    lInfo.satelliteId = satelliteValue(lText, &lIsValid, 0xFFFFFFFFu);
    lInfo.satelliteNumber = static_cast<uint8_t>(lInfo.satelliteId < 256 ? lInfo.satelliteId : 0);
    lInfo.elevation = static_cast<uint8_t>(satelliteValue(lText, &lIsValid, 255));
    lInfo.azimuth = satelliteValue(lText, &lIsValid, 0xFFFFFFFFu);
    lInfo.snr = static_cast<uint8_t>(satelliteValue(lText, &lIsValid, 255));
    lInfo.valid = lIsValid;
  }
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::RmcSentence& nRecord) {
  Text lText(npText);
  lText.address("RMC", &nRecord.satelliteType);
  lText.time(&nRecord.utcTime);
  if (!lText.isGood()) return false;
  nRecord.status = lText.letter() == 'A';
  lText.coordinate(&nRecord.latitude);
  lText.coordinate(&nRecord.longitude);
  nRecord.speed = lText.real();
  nRecord.direction = lText.real();
  lText.date(&nRecord.date);
  nRecord.magneticDeclination = lText.real();
  if (lText.letter() == 'W') nRecord.magneticDeclination = -nRecord.magneticDeclination;
  lText.mode(&nRecord.mode);
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::VtgSentence& nRecord) {
  Text lText(npText);
  lText.address("VTG", &nRecord.satelliteType);
  for (double* lpValue :
       {&nRecord.directionForTrueNorth, &nRecord.directionForMagneticNorth, &nRecord.speedKnot, &nRecord.speedKmh}) {
    *lpValue = lText.real();
    lText.letter();
  }
  lText.mode(&nRecord.mode);
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::ZdaSentence& nRecord) {
  Text lText(npText);
  lText.address("ZDA", &nRecord.satelliteType);
  lText.time(&nRecord.utcTime);
  if (!lText.isGood()) return false;
  nRecord.date.day = static_cast<uint16_t>(lText.number(0xFFFF));
  nRecord.date.month = static_cast<uint16_t>(lText.number(0xFFFF));
  nRecord.date.year = lText.number();
  nRecord.localZoneHour = static_cast<uint16_t>(lText.number(0xFFFF));
  nRecord.localZoneMinute = static_cast<uint16_t>(lText.number(0xFFFF));
  return lText.isGood();
}

inline bool parse(const char* npText, nfw::PubxSentence& nRecord) {
  Text lText(npText + 5);
  lText.require(strncmp(npText, "$PUBX", 5) == 0);
  lText.letter();
  nRecord.messageId = lText.count();
  lText.time(&nRecord.utcTime);
  if (!lText.isGood()) return false;
  lText.coordinate(&nRecord.latitude);
  lText.coordinate(&nRecord.longitude);
  nRecord.altitudeRef = lText.real();
  lText.status(&nRecord.status);
  for (double* lpValue : {&nRecord.hacc, &nRecord.vacc, &nRecord.speed, &nRecord.direction, &nRecord.vvel}) {
    *lpValue = lText.real();
  }
  nRecord.dgpsDataAge = lText.count();
  for (double* lpValue : {&nRecord.hdop, &nRecord.vdop, &nRecord.tdop}) *lpValue = lText.real();
  nRecord.satelliteCount = lText.count();
  nRecord.drMode = lText.letter() == '1';
  return lText.isGood();
}

}  // namespace straight
