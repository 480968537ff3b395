/// @file
/// Real numbers as scaled integers and back.
#pragma once

#include <cstdint>

namespace nfw {

/// A real times 10^nScale, rounded half away from zero.
/// @return false, logged, when it is no number of 32 bits
bool convertFloatToSint32(double nData, unsigned int nScale, int32_t* npValue);

/// The same from a text; an empty one is 0.
/// @param nIsNegated the number counts with the opposite sign
/// @return false, logged, when something follows the number or it does not fit, be it before it is negated or after
bool convertFloatStrToSint32(const char* npText, unsigned int nScale, bool nIsNegated, int32_t* npValue);

/// A scaled integer as decimal text with nDecimals digits behind the point and at least one before it, filled with "0"
/// on the left to nLeast characters. No terminator.
/// @return the length, -1, logged, when it does not fit
int convertIntToFloatStr(int64_t nValue, unsigned int nDecimals, unsigned int nLeast, char* nBuffer,
                         unsigned int nBufferSize);

}  // namespace nfw
