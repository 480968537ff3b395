#include "DecimalText.h"

#include <cmath>
#include <iterator>

#include "Format.h"

namespace tool {

namespace {

const uint64_t POWERS[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
const int MAX_DECIMALS = static_cast<int>(std::size(POWERS)) - 1;
const double MAX_SCALED = 1099511627776.0;  // 2^40: the product is then right to a ten thousandth
const double HALF_SLACK = 0.001;
const int SHORT_DECIMALS = 3;

}  // namespace

void appendNumber(uint64_t nValue, std::string* npText) {
  char lText[20];
  char* lpAt = lText + sizeof(lText);
  do {
    *--lpAt = static_cast<char>('0' + nValue % 10);
    nValue /= 10;
  } while (nValue != 0);
  npText->append(lpAt, static_cast<size_t>(lText + sizeof(lText) - lpAt));
}

void appendDigits(uint64_t nValue, int nDigits, std::string* npText) {
  char lText[20];
  for (int i = nDigits - 1; i >= 0; --i) {
    lText[i] = static_cast<char>('0' + nValue % 10);
    nValue /= 10;
  }
  npText->append(lText, static_cast<size_t>(nDigits));
}

// Where the product does not say for sure how it is to be rounded, the exact way is taken.
void appendFixed(double nValue, int nDecimals, std::string* npText) {
  const uint64_t lPower = POWERS[nDecimals <= MAX_DECIMALS ? nDecimals : 0];
  const double lScaled = std::fabs(nValue) * static_cast<double>(lPower);
  if (nDecimals > MAX_DECIMALS || !(lScaled < MAX_SCALED)) {
    fmt::format_to(std::back_inserter(*npText), "{:.{}f}", nValue, nDecimals);
    return;
  }
  uint64_t lWhole = static_cast<uint64_t>(lScaled);
  const double lRest = lScaled - static_cast<double>(lWhole);
  if (std::fabs(lRest - 0.5) < HALF_SLACK) {
    fmt::format_to(std::back_inserter(*npText), "{:.{}f}", nValue, nDecimals);
    return;
  }
  if (lRest > 0.5) ++lWhole;
  if (std::signbit(nValue)) npText->push_back('-');
  appendNumber(lWhole / lPower, npText);
  if (nDecimals == 0) return;
  npText->push_back('.');
  appendDigits(lWhole % lPower, nDecimals, npText);
}

// A number with few decimals that gives the value back is the shortest: two of at most 15 digits are never one double.
void appendShortest(double nValue, std::string* npText) {
  const uint64_t lPower = POWERS[SHORT_DECIMALS];
  const double lScaled = nValue * static_cast<double>(lPower);
  const uint64_t lWhole = lScaled >= 1.0 && lScaled < MAX_SCALED ? static_cast<uint64_t>(std::llround(lScaled)) : 0;
  if (lWhole == 0 || static_cast<double>(lWhole) / static_cast<double>(lPower) != nValue) {
    fmt::format_to(std::back_inserter(*npText), "{}", nValue);
    return;
  }
  appendNumber(lWhole / lPower, npText);
  if (lWhole % lPower == 0) return;
  npText->push_back('.');
  appendDigits(lWhole % lPower, SHORT_DECIMALS, npText);
  while (npText->back() == '0') npText->pop_back();
}

}  // namespace tool
