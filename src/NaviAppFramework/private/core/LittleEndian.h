// Integers of records, byte by byte: the same on every processor, at any address.
#pragma once

#include <cstdint>

namespace nfw {

inline void putUint16(unsigned char* npBytes, uint32_t nValue) {
  npBytes[0] = static_cast<unsigned char>(nValue);
  npBytes[1] = static_cast<unsigned char>(nValue >> 8);
}

inline void putUint32(unsigned char* npBytes, uint32_t nValue) {
  npBytes[0] = static_cast<unsigned char>(nValue);
  npBytes[1] = static_cast<unsigned char>(nValue >> 8);
  npBytes[2] = static_cast<unsigned char>(nValue >> 16);
  npBytes[3] = static_cast<unsigned char>(nValue >> 24);
}

inline uint32_t getUint16(const unsigned char* npBytes) { return npBytes[0] | static_cast<uint32_t>(npBytes[1]) << 8; }

inline uint32_t getUint32(const unsigned char* npBytes) { return getUint16(npBytes) | getUint16(npBytes + 2) << 16; }

/// nWidth bytes, 1, 2 or 4.
inline void putUint(unsigned char* npBytes, unsigned int nWidth, uint32_t nValue) {
  if (nWidth == 1) {
    *npBytes = static_cast<unsigned char>(nValue);
  } else if (nWidth == 2) {
    putUint16(npBytes, nValue);
  } else {
    putUint32(npBytes, nValue);
  }
}

inline uint32_t getUint(const unsigned char* npBytes, unsigned int nWidth) {
  return nWidth == 1 ? *npBytes : nWidth == 2 ? getUint16(npBytes) : getUint32(npBytes);
}

inline int32_t getSint32(const unsigned char* npBytes) { return static_cast<int32_t>(getUint32(npBytes)); }

}  // namespace nfw
