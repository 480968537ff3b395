#include "NfwNmeaCheckSumCalclator.h"

#include <cstring>

namespace nfw {

unsigned int NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(unsigned char const* npData, unsigned int nLength) {
  if (npData == nullptr || nLength == 0) return 0xFFFFFFFFu;
  const unsigned char* const lpFirst = npData + 1;
  const void* const lpStar = std::memchr(lpFirst, '*', nLength - 1);
  const unsigned char* const lpEnd = lpStar != nullptr ? static_cast<const unsigned char*>(lpStar) : npData + nLength;
  unsigned char lSum = 0;
  for (const unsigned char* lpNext = lpFirst; lpNext != lpEnd; ++lpNext)
    lSum = static_cast<unsigned char>(lSum ^ *lpNext);
  return lSum;
}

}  // namespace nfw
