#pragma once

#include "LineCounts.h"
#include "SentenceKind.h"

namespace drive {

/// What a run has counted so far. Each count has one writer; any thread may look.
struct Progress {
  tool::LineCounts mLines;       ///< by the reading thread
  tool::KindCounts mAccepted;    ///< parsed and handed to the dispatchers; "other": not parsed, for raw listeners only
  tool::KindCounts mUnparsable;  ///< refused by the parser
  tool::KindCounts mDelivered;   ///< records that reached their listener; "other": raw sentences
  std::atomic<uint64_t> mEpochs{0};           ///< combined records handed to the dispatcher
  std::atomic<uint64_t> mDeliveredEpochs{0};  ///< and those that reached their listener

  uint64_t ignored() const { return mAccepted.get(nfw::NMEA_UNKNOWN); }
  uint64_t accepted() const { return mAccepted.total() - ignored(); }
  uint64_t rejected() const { return mLines.rejected() + mUnparsable.total(); }

  /// Every line has one fate.
  bool addsUp() const { return mLines.total() == accepted() + ignored() + rejected(); }
  /// Every listener was given what was handed to the dispatchers.
  bool isAllDelivered() const;
};

}  // namespace drive
