#pragma once

#include <cstdint>

namespace tool {

// Eight bytes of a text, looked at together as one number. An answer is in the top bit of each byte.

inline constexpr uint64_t EACH_BYTE = 0x0101010101010101;
inline constexpr uint64_t TOP_BITS = EACH_BYTE << 7;

/// Which bytes are below that of `nLow` or above that of `nHigh`, which are of ASCII.
inline uint64_t bytesOutside(uint64_t nBytes, uint64_t nLow, uint64_t nHigh) {
  const uint64_t lRest = nBytes & ~TOP_BITS;  // with its top bit set no byte borrows from its neighbour
  return (nBytes | ~((lRest | TOP_BITS) - nLow) | ~((nHigh | TOP_BITS) - lRest)) & TOP_BITS;
}

/// Which bytes are the sign.
inline uint64_t bytesEqual(uint64_t nBytes, char nSign) {
  const uint64_t lOther = nBytes ^ EACH_BYTE * static_cast<unsigned char>(nSign);
  return ~(((lOther & ~TOP_BITS) + ~TOP_BITS) | lOther) & TOP_BITS;
}

}  // namespace tool
