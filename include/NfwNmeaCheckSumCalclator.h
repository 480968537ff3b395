/// @file
/// The checksum of a sentence.
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Stateless: any thread may call at any time.
class NFW_API NmeaCheckSumCalclator {
 public:
  NmeaCheckSumCalclator() = default;
  virtual ~NmeaCheckSumCalclator() = default;

  /// The exclusive-or of the bytes behind the first up to the first "*" or the end.
  /// @return 0 to 255, or 0xFFFFFFFF for null data or zero length
  static unsigned int calculateNmeaSentenceCheckSum(unsigned char const* npData, unsigned int nLength);
};

}  // namespace nfw
