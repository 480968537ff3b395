#pragma once

#include <cstdint>
#include <string_view>

namespace tool {

const int64_t MS_PER_DAY = 24 * 3600 * 1000;

/// The three letters behind the talker as one number, to compare with typeCode("GGA"); 0 when no field follows them.
constexpr uint32_t typeCode(std::string_view nType) {
  return static_cast<uint32_t>(static_cast<unsigned char>(nType[0]) << 16 | static_cast<unsigned char>(nType[1]) << 8 |
                               static_cast<unsigned char>(nType[2]));
}
constexpr uint32_t sentenceTypeCode(std::string_view nSentence) {
  return nSentence.size() > 6 && nSentence[6] == ',' ? typeCode(nSentence.substr(3, 3)) : 0;
}

/// The UTC time of day that a sentence carries, in milliseconds, or -1. Known for GGA, GLL, RMC, ZDA, GNS, GST and
/// "$PUBX,00". The parsed records keep the digits behind the second unscaled, so pacing reads the text itself.
int64_t sentenceTime(std::string_view nSentence);

/// Of the field alone: "hhmmss" and what follows a point. -1 for anything else.
int64_t timeOfDay(std::string_view nField);

/// The date that an RMC or ZDA sentence carries, in days since 1970, or -1.
int64_t sentenceDay(std::string_view nSentence);

/// Of the fields alone, days since 1970; -1 for what is no date.
int64_t dayOfDate(std::string_view nField);  ///< "ddmmyy" of this century
int64_t dayOfDate(std::string_view nYear, std::string_view nMonth, std::string_view nDay);

/// One field of a sentence, 0 being the address; empty when there is none.
std::string_view sentenceField(std::string_view nSentence, int nIndex);

}  // namespace tool
