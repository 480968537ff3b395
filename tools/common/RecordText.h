#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tool {

/// Bytes as a person can read them: in quotes when all are printable, else in hexadecimal; at most the first 40.
std::string quoteBytes(std::string_view nBytes);

/// Of the Gregorian calendar; not before the year 0.
int64_t daysSince1970(int64_t nYear, int64_t nMonth, int64_t nDay);

/// A stamp "YYYY/MM/DD hh:mm:ss.mmm" in milliseconds since 1970 as if it were UTC; -1 when it is none.
int64_t stampMs(std::string_view nStamp);

}  // namespace tool
