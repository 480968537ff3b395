/// @file
/// One dead-reckoning result as a set of sentences.
#pragma once

#include <cstdint>

#include "NfwExport.h"

namespace nfw {

/// One sentence of a set. The text ends in carriage return and line feed; it has no terminator of its own.
class NFW_API NmeaSentenceData {
 public:
  static constexpr unsigned int MAX_TEXT = 256;

  virtual ~NmeaSentenceData() = default;

  unsigned char mText[MAX_TEXT] = {};
  uint32_t mLength = 0;  ///< bytes of the text, 0 for an empty slot
};

/// The sentences of one dead-reckoning result; a value of a little over 10 KB.
class NFW_API DeadReckoningNmeaSentence {
 public:
  static constexpr unsigned int MAX_GSA = 4;
  static constexpr unsigned int MAX_GSV = 32;

  virtual ~DeadReckoningNmeaSentence() = default;

  /// Empties every slot: texts all zero, lengths and counts 0.
  void clear();

  NmeaSentenceData mRmc;
  NmeaSentenceData mVtg;
  NmeaSentenceData mGga;
  uint32_t mGsaCount = 0;  ///< slots of `mGsa` in use
  NmeaSentenceData mGsa[MAX_GSA];
  uint32_t mGsvCount = 0;  ///< slots of `mGsv` in use
  NmeaSentenceData mGsv[MAX_GSV];
  NmeaSentenceData mPubx;
};

}  // namespace nfw
