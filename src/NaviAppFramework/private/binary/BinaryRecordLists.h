/// @file
/// The fields of every record, as constants: a walk that is compiled for one of the lists asks nothing of a field while
/// it runs.
#pragma once

#include "BinaryRecordFormat.h"

namespace nfw {
namespace binaryfields {

// What is said of a text that has no code.
void refuseMode(const char* npText);
void refusePositioningType(const char* npText);
void refusePubxStatus(const char* npText);

// Whether the text of its status field makes a sentence that reports a valid fix.
bool isGgaValid(const char* npStatus);
bool isGllValid(const char* npStatus);
bool isGsaValid(const char* npStatus);
bool isRmcValid(const char* npStatus);
bool isPubxValid(const char* npStatus);

inline constexpr unsigned char NIBBLE = 0x0F;
inline constexpr unsigned char BYTE = 0xFF;
inline constexpr BinaryCode MODE = {"NADE", 1, 0, NIBBLE, refuseMode, "UnknownMode: Mode"};
inline constexpr BinaryCode VTG_MODE = {"NADE", 1, 0, BYTE, refuseMode, "UnknownMode: Mode"};
inline constexpr BinaryCode SELECTION = {
    " AM", 1, 4, NIBBLE, refusePositioningType, "UnknownPositioningType: PositioningType"};
inline constexpr BinaryCode GLL_STATUS = {"VA", 1, 4, NIBBLE, nullptr, nullptr};
inline constexpr BinaryCode RMC_STATUS = {"VADU", 1, 4, NIBBLE, nullptr, "UnknownStatus: Status"};
inline constexpr BinaryCode PUBX_STATUS = {"NFDRG2G3D2D3RKTT", 2, 0, NIBBLE, refusePubxStatus, "UnknownStatus: Status"};
inline constexpr BinaryCode DEAD_RECKONING_FLAG = {"01", 1, 4, NIBBLE, nullptr, nullptr};

inline constexpr const char* NORTH_SOUTH = "NS";
inline constexpr const char* EAST_WEST = "EW";
inline constexpr unsigned char TIME_DIGITS = 10;       // hhmmss.sss
inline constexpr unsigned char LATITUDE_DIGITS = 10;   // ddmm.mmmmm
inline constexpr unsigned char LONGITUDE_DIGITS = 11;  // dddmm.mmmmm
inline constexpr bool ZERO_IS_EMPTY = true;

constexpr BinaryField real(unsigned char nOffset, unsigned char nScale, const char* npName, const char* npMissing,
                           unsigned char nDigits = 0) {
  return {BinaryField::REAL, nOffset, 4, nScale, nDigits, false, 0, nullptr, nullptr, npMissing, nullptr, npName};
}

constexpr BinaryField time(unsigned char nOffset, const char* npName) {
  return real(nOffset, 3, npName, "parseSentenceFieldToSint32Buffer UTC Error", TIME_DIGITS);
}

constexpr BinaryField latitude(unsigned char nOffset, const char* npName) {
  const char* const lpMissing = "parseLatitudeFieldToSint32Buffer Latitude Error";
  return {BinaryField::REAL, nOffset, 4,         5,         LATITUDE_DIGITS, false, 0,
          NORTH_SOUTH,       nullptr, lpMissing, lpMissing, npName};
}

constexpr BinaryField longitude(unsigned char nOffset, const char* npName) {
  const char* const lpMissing = "parseLongitudeFieldToSint32Buffer Longitude Error";
  return {BinaryField::REAL, nOffset,   4,         5,     LONGITUDE_DIGITS, false, 0, EAST_WEST,
          nullptr,           lpMissing, lpMissing, npName};
}

constexpr BinaryField unit(const char* npText) {
  return {BinaryField::UNIT, 0, 0, 0, 0, false, 0, npText, nullptr, nullptr, nullptr, nullptr};
}

constexpr BinaryField number(unsigned char nOffset, unsigned char nWidth, unsigned char nDigits, const char* npMissing,
                             const char* npFailed, bool nIsZeroEmpty = false) {
  return {BinaryField::NUMBER, nOffset,  nWidth, 0, nDigits, nIsZeroEmpty, 0, nullptr, nullptr,
          npMissing,           npFailed, nullptr};
}

// In the byte of the codes, or where an own offset is given.
constexpr BinaryField other(BinaryField::Kind nKind, const char* npMissing, const char* npFailed,
                            unsigned char nDigits = 0, unsigned char nOffset = CODE_OFFSET) {
  return {nKind, nOffset, 1, 0, nDigits, false, 0, nullptr, nullptr, npMissing, npFailed, nullptr};
}

constexpr BinaryField code(const BinaryCode& nCode, const char* npMissing, const char* npFailed = nullptr) {
  return {BinaryField::CODE, CODE_OFFSET, 1, 0, 0, false, 0, nullptr, &nCode, npMissing, npFailed, nullptr};
}

constexpr BinaryField satellites(unsigned char nOffset, unsigned char nCount, bool nIsZeroEmpty,
                                 const char* npMissing) {
  return {BinaryField::SATELLITES,
          nOffset,
          0,
          0,
          2,
          nIsZeroEmpty,
          nCount,
          nullptr,
          nullptr,
          npMissing,
          "convertFromSatelliteNumString() Error",
          nullptr};
}

// $GPGGA,123519.00,4807.038,N,01131.000,E,1,08,0.9,545.4,M,46.9,M,,*47
inline constexpr BinaryField GGA_FIELDS[] = {
    time(3, "Gga_UTC"),
    latitude(7, "Gga_Latitude"),
    longitude(11, "Gga_Longitude"),
    other(BinaryField::HIGH_NIBBLE, "Extract Quality Error", "utl::toUint8() Error"),
    other(BinaryField::LOW_NIBBLE, "Extract SatelliteView Error", "utl::toUint8() Error", 2),
    real(15, 2, "Gga_HDop", "parseSentenceFieldToSint32Buffer HDop Error"),
    real(19, 1, "Gga_Altitude", "parseSentenceFieldToSint32Buffer Altitude Error"),
    unit("M"),
    real(23, 1, "Gga_Geoid", "parseSentenceFieldToSint32Buffer Geoid Error"),
    unit("M"),
    number(27, 2, 0, "Extract DgpsDataAge Error", "utl::toUint16() DgpsDataAge Error", ZERO_IS_EMPTY),
    number(29, 2, 0, "Extract DgpsId Error", "utl::toUint16() DgpsId Error", ZERO_IS_EMPTY),
};

// $GPGLL,4807.038,N,01131.000,E,123519.00,A,A*61
inline constexpr BinaryField GLL_FIELDS[] = {
    latitude(7, "Gll_Latitude"),
    longitude(11, "Gll_Longitude"),
    time(3, "Gll_UTC"),
    code(GLL_STATUS, "Extract Status Error"),
    code(MODE, "Extract Mode Error", "Convert Mode Error"),
};

// $GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1*39
inline constexpr BinaryField GSA_FIELDS[] = {
    code(SELECTION, "Extract PositioningType Error", "Convert PositioningType Error"),
    other(BinaryField::LOW_NIBBLE, "Extract Mode Error", "utl::toUint8() Mode Error"),
    satellites(4, 12, ZERO_IS_EMPTY, "Extract UsedSatellite Error"),
    real(4, 2, "Gsa_PDop", "parseSentenceFieldToSint32Buffer PDop Error"),
    real(8, 2, "Gsa_HDop", "parseSentenceFieldToSint32Buffer HDop Error"),
    real(12, 2, "Gsa_VDop", "parseSentenceFieldToSint32Buffer VDop Error"),
};

// $GPGSV,2,1,08,01,40,083,46,02,17,308,41,12,07,344,39,14,22,228,45*75
inline constexpr BinaryField GSV_FIELDS[] = {
    number(2, 1, 0, "Extract MessageCount Error", "utl::toUint8() MessageCount Error"),
    number(3, 1, 0, "Extract MessageNum Error", "utl::toUint8() MessageNum Error"),
    number(4, 1, 2, "Extract SatelliteView Error", "utl::toUint8() SatelliteView Error"),
    other(BinaryField::BLOCKS, nullptr, nullptr, 0, GSV_HEADER_SIZE),
};

// $GPRMC,123519.00,A,4807.038,N,01131.000,E,022.4,084.4,230394,003.1,W,A*2B
inline constexpr BinaryField RMC_FIELDS[] = {
    time(3, "Rmc_UTC"),
    code(RMC_STATUS, "Extract Status Error"),
    latitude(7, "Rmc_Latitude"),
    longitude(11, "Rmc_Longitude"),
    real(15, 3, "Rmc_Speed", "parseSentenceFieldToSint32Buffer Speed Error"),
    real(19, 2, "Rmc_Direction", "parseSentenceFieldToSint32Buffer Direction Error"),
    other(BinaryField::DATE, "Extract Date Error", "utl::toUint8() Error", 2, 23),
    {BinaryField::REAL, 26, 4, 1, 0, false, 0, EAST_WEST, nullptr,
     "parseSentenceFieldToSint32Buffer MagneticDeclination Error", "Extract MagneticDeclination Direction Error",
     "Rmc_MagneticDeclination"},
    code(MODE, "Extract Mode Error", "Convert Mode Error"),
};

// $GPVTG,054.7,T,034.4,M,005.5,N,010.2,K,A*25
inline constexpr BinaryField VTG_FIELDS[] = {
    real(3, 2, "Vtg_DirectionForTrueNorth", "parseSentenceFieldToSint32Buffer DirectionForTrueNorth Error"),
    unit("T"),
    real(7, 2, "Vtg_DirectionForMagneticNorth", "parseSentenceFieldToSint32Buffer DirectionForMagneticNorth Error"),
    unit("M"),
    real(11, 3, "Vtg_SpeedKnot", "parseSentenceFieldToSint32Buffer SpeedKnot Error"),
    unit("N"),
    real(15, 3, "Vtg_SpeedKmh", "parseSentenceFieldToSint32Buffer SpeedKmh Error"),
    unit("K"),
    code(VTG_MODE, "Extract Mode Error", "Convert Mode Error"),
};

// $GPZDA,123519.00,23,03,2024,00,00*6B
inline constexpr BinaryField ZDA_FIELDS[] = {
    time(2, "Zda_UTC"),
    number(6, 1, 2, "Extract Date Error", "utl::toUint8() Error"),
    number(7, 1, 2, "Extract Date Error", "utl::toUint8() Error"),
    other(BinaryField::YEAR, "Extract Date Error", "utl::toUint16() Error", 2, 8),
    unit("00"),
    unit("00"),
};

// $PUBX,00,123519.00,4807.038,N,01131.000,E,545.4,G3,2.1,2.0,0.007,77.52,0.007,,0.92,1.19,0.77,9,0,0*5F
inline constexpr BinaryField PUBX_FIELDS[] = {
    number(3, 4, 2, "Extract MessageId Error", "utl::toUint32() MessageId Error"),
    time(7, "Pubx_UTC"),
    latitude(11, "Pubx_Latitude"),
    longitude(15, "Pubx_Longitude"),
    real(19, 3, "Pubx_AltitudeRef", "parseSentenceFieldToSint32Buffer AltitudeRef Error"),
    code(PUBX_STATUS, "Extract Status Error", "Convert Status Error"),
    real(23, 1, "Pubx_Hacc", "parseSentenceFieldToSint32Buffer Hacc Error"),
    real(27, 1, "Pubx_Vacc", "parseSentenceFieldToSint32Buffer Vacc Error"),
    real(31, 3, "Pubx_Speed", "parseSentenceFieldToSint32Buffer Speed Error"),
    real(35, 2, "Pubx_Direction", "parseSentenceFieldToSint32Buffer Direction Error"),
    real(39, 3, "Pubx_Vvel", "parseSentenceFieldToSint32Buffer Vvel Error"),
    number(43, 2, 0, "Extract DgpsDataAge Error", "utl::toUint16() DgpsDataAge Error"),
    real(45, 2, "Pubx_HDop", "parseSentenceFieldToSint32Buffer HDop Error"),
    real(49, 2, "Pubx_VDop", "parseSentenceFieldToSint32Buffer VDop Error"),
    real(53, 2, "Pubx_TDop", "parseSentenceFieldToSint32Buffer TDop Error"),
    number(57, 1, 0, "Extract SatelliteView Error", "utl::toUint8() SatelliteView Error"),
    code(DEAD_RECKONING_FLAG, "Extract DrMode Error"),
};

template <unsigned int N>
constexpr unsigned int numOf(const BinaryField (&)[N]) {
  return N;
}

}  // namespace binaryfields

inline constexpr BinaryField GSV_BLOCK_FIELDS[] = {
    binaryfields::satellites(0, 1, false, "Extract SatelliteId Error"),
    binaryfields::number(1, 1, 2, "Extract Elevation Error", "utl::toUint8() Elevation Error"),
    binaryfields::number(3, 2, 3, "Extract Azimuth Error", "utl::toUint16() Azimuth Error"),
    binaryfields::number(2, 1, 2, "Extract Snr Error", "utl::toUint8() Snr Error"),
};

inline constexpr BinaryRecordFormat GGA_FORMAT = {"convertFromGgaSentence",
                                                  "convertToGgaSentence",
                                                  "convertFromDeadReckoningGgaData",
                                                  "GGA",
                                                  31,
                                                  nullptr,
                                                  binaryfields::GGA_FIELDS,
                                                  binaryfields::numOf(binaryfields::GGA_FIELDS),
                                                  6,
                                                  "Extract Quality Error",
                                                  binaryfields::isGgaValid};
inline constexpr BinaryRecordFormat GLL_FORMAT = {"convertFromGllSentence",
                                                  "convertToGllSentence",
                                                  nullptr,
                                                  "GLL",
                                                  15,
                                                  nullptr,
                                                  binaryfields::GLL_FIELDS,
                                                  binaryfields::numOf(binaryfields::GLL_FIELDS),
                                                  6,
                                                  "Extract Status Error",
                                                  binaryfields::isGllValid};
inline constexpr BinaryRecordFormat GSA_FORMAT = {"convertFromGsaSentence",
                                                  "convertToGsaSentence",
                                                  "convertFromDeadReckoningGsaData",
                                                  "GSA",
                                                  0,
                                                  &NmeaBinaryLogDataVersion0::getGsaBinaryLogSize,
                                                  binaryfields::GSA_FIELDS,
                                                  binaryfields::numOf(binaryfields::GSA_FIELDS),
                                                  2,
                                                  "Extract Mode Error",
                                                  binaryfields::isGsaValid};
inline constexpr BinaryRecordFormat GSV_FORMAT = {"convertFromGsvSentence",
                                                  "convertToGsvSentence",
                                                  "convertFromDeadReckoningGsvData",
                                                  "GSV",
                                                  0,
                                                  &NmeaBinaryLogDataVersion0::getGsvBinaryLogSize,
                                                  binaryfields::GSV_FIELDS,
                                                  binaryfields::numOf(binaryfields::GSV_FIELDS),
                                                  0,
                                                  nullptr,
                                                  nullptr};
inline constexpr BinaryRecordFormat RMC_FORMAT = {"convertFromRmcSentence",
                                                  "convertToRmcSentence",
                                                  "convertFromDeadReckoningRmcData",
                                                  "RMC",
                                                  30,
                                                  nullptr,
                                                  binaryfields::RMC_FIELDS,
                                                  binaryfields::numOf(binaryfields::RMC_FIELDS),
                                                  2,
                                                  "Extract Status Error",
                                                  binaryfields::isRmcValid};
inline constexpr BinaryRecordFormat VTG_FORMAT = {"convertFromVtgSentence",
                                                  "convertToVtgSentence",
                                                  "convertFromDeadReckoningVtgData",
                                                  "VTG",
                                                  19,
                                                  nullptr,
                                                  binaryfields::VTG_FIELDS,
                                                  binaryfields::numOf(binaryfields::VTG_FIELDS),
                                                  0,
                                                  nullptr,
                                                  nullptr};
inline constexpr BinaryRecordFormat ZDA_FORMAT = {"convertFromZdaSentence",
                                                  "convertToZdaSentence",
                                                  nullptr,
                                                  "ZDA",
                                                  9,
                                                  nullptr,
                                                  binaryfields::ZDA_FIELDS,
                                                  binaryfields::numOf(binaryfields::ZDA_FIELDS),
                                                  0,
                                                  nullptr,
                                                  nullptr};
inline constexpr BinaryRecordFormat PUBX_FORMAT = {"convertFromPubxSentence",
                                                   "convertToPubxSentence",
                                                   "convertFromDeadReckoningPubxData",
                                                   "$PUBX",
                                                   58,
                                                   nullptr,
                                                   binaryfields::PUBX_FIELDS,
                                                   binaryfields::numOf(binaryfields::PUBX_FIELDS),
                                                   8,
                                                   "Extract Status Error",
                                                   binaryfields::isPubxValid};

}  // namespace nfw
