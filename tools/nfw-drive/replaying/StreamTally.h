#pragma once

#include <array>
#include <string>
#include <string_view>

#include "SentenceKind.h"

namespace drive {

/// How many texts came, and a sum over all of them in their order: two streams of the same sum held the same texts.
struct TextTally {
  uint64_t mCount = 0;
  uint64_t mSum = 0xCBF29CE484222325u;
  uint64_t mFirst = 0;  ///< the sum behind the first one

  void add(std::string_view nText);
  bool operator==(const TextTally& n) const { return mCount == n.mCount && mSum == n.mSum; }
};

/// What listeners of each kind received, or are to receive.
struct StreamTally {
  TextTally mSentences;                             ///< as they came, without their line ends
  std::array<uint64_t, tool::KIND_NUM> mRecords{};  ///< by kind; the first place is unused
  uint64_t mCombined = 0;                           ///< records of all kinds together
  TextTally mDeadReckoning;                         ///< sentences of dead reckoning, without empty ones

  bool operator==(const StreamTally& n) const;
  uint64_t records() const;

  /// "1020 sentences, GGA 60 ... , 60 combined, 360 of dead reckoning"
  std::string toText() const;
  /// The first thing in which `nOther` differs, as "GGA 59, live 60"; empty when nothing does.
  std::string difference(const StreamTally& nOther, const char* npOther) const;
};

}  // namespace drive
