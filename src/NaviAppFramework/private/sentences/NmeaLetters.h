/// @file
/// The letters of a sentence and what they stand for.
#pragma once

#include <cstddef>

#include "NfwNmeaSentence.h"

namespace nfw {

template <class Value>
struct NmeaLetter {
  char mLetter;
  Value mValue;
};

inline constexpr NmeaLetter<SatelliteType> TALKER_LETTERS[] = {
    {'P', SATELLITE_GPS}, {'L', SATELLITE_GLONASS}, {'A', SATELLITE_GALILEO}, {'N', SATELLITE_COMBINED}};
inline constexpr NmeaLetter<CoordinateDirection> DIRECTION_LETTERS[] = {
    {'N', DIRECTION_NORTH}, {'S', DIRECTION_SOUTH}, {'E', DIRECTION_EAST}, {'W', DIRECTION_WEST}};
inline constexpr NmeaLetter<SatelliteQuality> QUALITY_DIGITS[] = {
    {'0', QUALITY_INVALID}, {'1', QUALITY_GPS}, {'2', QUALITY_DIFFERENTIAL}, {'6', QUALITY_ESTIMATED}};
inline constexpr NmeaLetter<AutonomousMethodType> MODE_LETTERS[] = {
    {'N', MODE_NOT_VALID}, {'A', MODE_AUTONOMOUS}, {'D', MODE_DIFFERENTIAL}, {'E', MODE_ESTIMATED}};
inline constexpr NmeaLetter<PositioningType> POSITIONING_LETTERS[] = {{'A', POSITIONING_AUTOMATIC},
                                                                      {'M', POSITIONING_MANUAL}};
inline constexpr NmeaLetter<GsaMode> GSA_MODE_DIGITS[] = {{'1', GSA_NO_FIX}, {'2', GSA_2D}, {'3', GSA_3D}};

/// False, and the value untouched, for a letter that is not in the table.
template <class Value, size_t N>
bool fromLetter(char nLetter, const NmeaLetter<Value> (&nLetters)[N], Value* npValue) {
  for (const NmeaLetter<Value>& lEntry : nLetters) {
    if (lEntry.mLetter != nLetter) continue;
    *npValue = lEntry.mValue;
    return true;
  }
  return false;
}

/// As above, with a value for every other letter.
template <class Value, size_t N>
Value fromLetter(char nLetter, const NmeaLetter<Value> (&nLetters)[N], Value nOther) {
  fromLetter(nLetter, nLetters, &nOther);
  return nOther;
}

}  // namespace nfw
