#include "Constellation.h"

#include <iterator>

namespace logtool {

namespace {

struct Talker {
  const char* mpTalker;
  Constellation mConstellation;
};
const Talker TALKERS[] = {{"GL", GLONASS}, {"GA", GALILEO}, {"GB", BEIDOU}, {"BD", BEIDOU},
                          {"GQ", QZSS},    {"QZ", QZSS},    {"GI", NAVIC}};

/// Numbers that are a system's alone, and what they lie above those within it.
struct NumberRange {
  int mFirst, mLast;
  Constellation mConstellation;
  int mShift;
};
const NumberRange RANGES[] = {{1, 32, GPS, 0},        {33, 64, SBAS, -87},   {65, 99, GLONASS, 64},
                              {120, 158, SBAS, 0},    {193, 202, QZSS, 192}, {301, 336, GALILEO, 300},
                              {401, 463, BEIDOU, 400}};

SatelliteName nameOf(Constellation nConstellation, int nNumber) {
  for (const NumberRange& lRange : RANGES) {
    const bool lIsShifted = lRange.mConstellation == nConstellation && nNumber >= lRange.mFirst;
    if (lIsShifted && nNumber <= lRange.mLast) return {nConstellation, nNumber - lRange.mShift};
  }
  return {nConstellation, nNumber};
}

}  // namespace

SatelliteName satelliteName(std::string_view nTalker, int nNumber) {
  for (const Talker& lTalker : TALKERS) {
    if (nTalker == lTalker.mpTalker) return nameOf(lTalker.mConstellation, nNumber);
  }
  for (const NumberRange& lRange : RANGES) {
    if (nNumber >= lRange.mFirst && nNumber <= lRange.mLast) return nameOf(lRange.mConstellation, nNumber);
  }
  return {nTalker == "GP" ? GPS : OTHER_CONSTELLATION, nNumber};
}

const char* constellationName(Constellation nConstellation) {
  static const char* const NAMES[] = {"GPS", "GLONASS", "Galileo", "BeiDou", "QZSS", "NavIC", "SBAS", "other"};
  static_assert(std::size(NAMES) == OTHER_CONSTELLATION + 1);
  return NAMES[nConstellation];
}

char constellationLetter(Constellation nConstellation) { return "GRECJISX"[nConstellation]; }

}  // namespace logtool
