/// @file
/// Satellite numbers of a fixed width, as one version of the binary log stores them.
#pragma once

#include <cstdint>

#include "NfwNmeaBinaryLogDataVersion0.h"

namespace nfw {

class SatelliteNumber {
 public:
  static constexpr bool READS_FULL_WIDTH = true;  ///< characters beyond ASCII are first made half-width, in place

  /// @param npClass of the version, as the log names it
  /// @param nSize 1 or 2 bytes
  constexpr SatelliteNumber(const char* npClass, unsigned int nSize, bool nReadsFullWidth = false)
      : mpClass(npClass), mSize(nSize), mReadsFullWidth(nReadsFullWidth) {}

  /// Each as the operation of NmeaBinaryLogDataVersion0 that it serves.
  int fromString(char* npText, unsigned char* npOut, unsigned int nOutSize) const;
  int fromUint32(unsigned int nNumber, unsigned char* npOut, unsigned int nOutSize) const;
  int toString(const unsigned char* npRecord, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize,
               unsigned int* npConsumed) const;

  unsigned int size() const { return mSize; }

  /// The bytes of a number in a version whose texts of digits may be read and written without asking it: the versions
  /// here. One that derives from them is asked for every number, 0.
  static unsigned int plainSize(NmeaBinaryLogDataVersion0& nVersion);
  static bool fits(uint32_t nNumber, unsigned int nPlainSize) {
    return nPlainSize != 0 && nNumber >> (8 * nPlainSize) == 0;
  }

 private:
  bool read(char* npText, uint32_t* npNumber) const;
  int fail(const char* npOperation, const char* npWords) const;

  const char* mpClass;
  unsigned int mSize;
  bool mReadsFullWidth;
};

}  // namespace nfw
