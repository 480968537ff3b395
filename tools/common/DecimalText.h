#pragma once

#include <cstdint>
#include <string>

namespace tool {

/// Appends a number with so many decimals, 15 at most: the digits of "{:.Nf}" without what a format string costs.
void appendFixed(double nValue, int nDecimals, std::string* npText);

/// Appends the shortest digits that give the value back, as "{}".
void appendShortest(double nValue, std::string* npText);

void appendNumber(uint64_t nValue, std::string* npText);

/// Appends the last digits of a number, with zeros before them where it has fewer.
void appendDigits(uint64_t nValue, int nDigits, std::string* npText);

}  // namespace tool
