/// @file
/// Numbers as decimal text.
#pragma once

#include <cstdint>
#include <cstring>

namespace nfw {

/// Each gives the end of the text that it wrote; there is no terminator. The caller has seen to the room. Numbers are
/// written out of line: in every field of every sentence they would be 13 KB of code.
class Digits {
 public:
  static const unsigned int MOST = 10;  ///< of a number of 32 bits
  static constexpr uint32_t POWERS_OF_TEN[] = {1,      10,      100,      1000,      10000,
                                               100000, 1000000, 10000000, 100000000, 1000000000};

  /// How many a number has without zeros before it.
  static unsigned int count(uint32_t nValue) {
    unsigned int lNum = 1;
    while (lNum < MOST && nValue >= POWERS_OF_TEN[lNum]) ++lNum;
    return lNum;
  }

  /// Exactly nNum digits, the last ones of the number.
  template <class Char>
  [[gnu::always_inline]] static Char* put(Char* npText, uint32_t nValue, unsigned int nNum) {
    for (unsigned int i = nNum; i > 1; i -= 2, nValue /= 100) memcpy(npText + i - 2, PAIRS + nValue % 100 * 2, 2);
    if (nNum % 2 != 0) *npText = static_cast<Char>('0' + nValue % 10);
    return npText + nNum;
  }

  /// All digits, filled with "0" on the left to nLeast.
  template <class Char>
  static Char* putAll(Char* npText, uint32_t nValue, unsigned int nLeast) {
    return reinterpret_cast<Char*>(putBytes(reinterpret_cast<unsigned char*>(npText), nValue, nLeast));
  }

  /// A number times 10^-nDecimals, with at least one digit before the point, filled with "0" to nLeast characters.
  template <class Char>
  static Char* putScaled(Char* npText, uint32_t nValue, unsigned int nDecimals, unsigned int nLeast) {
    unsigned char* const lpText = reinterpret_cast<unsigned char*>(npText);
    return reinterpret_cast<Char*>(putScaledBytes(lpText, nValue, nDecimals, nLeast));
  }

 private:
  [[gnu::noinline]] static unsigned char* putBytes(unsigned char* npText, uint32_t nValue, unsigned int nLeast) {
    const unsigned int lLeast = nLeast > 0 ? nLeast : 1;
    return put(npText, nValue, lLeast >= MOST || nValue < POWERS_OF_TEN[lLeast] ? lLeast : count(nValue));
  }

  [[gnu::noinline]] static unsigned char* putScaledBytes(unsigned char* npText, uint32_t nValue, unsigned int nDecimals,
                                                         unsigned int nLeast) {
    const unsigned int lBehind = nDecimals + 1, lUnit = POWERS_OF_TEN[nDecimals];
    unsigned char* const lpPoint = putBytes(npText, nValue / lUnit, nLeast > lBehind ? nLeast - lBehind : 0);
    *lpPoint = '.';
    return put(lpPoint + 1, nValue % lUnit, nDecimals);
  }

  static constexpr char PAIRS[] =
      "00010203040506070809101112131415161718192021222324252627282930313233343536373839404142434445464748495051525354"
      "555657585960616263646566676869707172737475767778798081828384858687888990919293949596979899";
};

}  // namespace nfw
