#pragma once

#include <string_view>

#include "NfwDeadReckoningNmeaSentence.h"

namespace drive {

/// What a replay of the data logger makes of the recorded sentences of dead reckoning: it hands them on as the sets in
/// which they came, each from its RMC to its PUBX. Where a recording begins or ends within a set, or holds selected
/// kinds only, what belongs to no whole set is not heard. One thread at a time.
class ReckonedSets {
 public:
  /// The set that the sentence completes, valid until the next call; else null.
  const nfw::DeadReckoningNmeaSentence* onSentence(std::string_view nSentence);

 private:
  nfw::NmeaSentenceData* slotFor(int nKind);

  nfw::DeadReckoningNmeaSentence mSet;
  bool mIsOpen = false;
};

}  // namespace drive
