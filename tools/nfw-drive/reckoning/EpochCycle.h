#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace drive {

/// Learns with which sentence the epochs of a receiver end: receivers send the same kinds in the same order, epoch for
/// epoch. One with which some epochs in a row have ended is taken for the last; when more comes behind it nevertheless,
/// it has to prove itself twice as long. One thread at a time, nothing is allocated.
class EpochCycle {
 public:
  void begin();  ///< the next sentence is the first of an epoch
  /// Whether the epoch is complete with this sentence.
  bool onSentence(std::string_view nSentence);

 private:
  static constexpr size_t MAX_KINDS = 32;
  static constexpr unsigned int FIRST_PROOF = 2, MAX_PROOF = 1024;

  /// What a sentence is called, and the how many-eth of that name in its epoch it is.
  using Name = std::array<char, 8>;
  struct Mark {
    Name mName{};
    unsigned int mNumber = 0;
    bool operator==(const Mark& n) const { return mName == n.mName && mNumber == n.mNumber; }
  };

  static Name nameOf(std::string_view nSentence);
  unsigned int count(const Name& nName);

  std::array<Mark, MAX_KINDS> mSeen;  // in this epoch
  size_t mSeenNum = 0;
  Mark mNewest;
  Mark mLast;                // of the epochs before
  unsigned int mAgreed = 0;  // so many in a row
  unsigned int mProof = FIRST_PROOF;
  bool mHasBegun = false;
  bool mIsComplete = false;
};

}  // namespace drive
