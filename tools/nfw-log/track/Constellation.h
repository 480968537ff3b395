#pragma once

#include <string_view>

namespace logtool {

enum Constellation { GPS, GLONASS, GALILEO, BEIDOU, QZSS, NAVIC, SBAS, OTHER_CONSTELLATION };

/// A satellite by its system and its number within it, as operators count them.
struct SatelliteName {
  Constellation mConstellation;
  int mNumber;
  bool operator==(const SatelliteName& nOther) const {
    return mConstellation == nOther.mConstellation && mNumber == nOther.mNumber;
  }
};

/// Of a GSV sentence. A talker that is common to all systems leaves it to the number's range; numbers that a receiver
/// has moved into a range of their own are moved back.
/// @param nTalker two letters, as "GP" @param nNumber as it stands in the sentence
SatelliteName satelliteName(std::string_view nTalker, int nNumber);

/// "GPS", "GLONASS" ...
const char* constellationName(Constellation nConstellation);
/// The letter that stands before a satellite's number: G, R, E, C, J, I, S; X for another.
char constellationLetter(Constellation nConstellation);

}  // namespace logtool
