#pragma once

#include <atomic>
#include <string>

#include "LineCounts.h"
#include "SentenceKind.h"

namespace drive {

/// What was read of a source, or of all, and what became of it. Whoever reads counts, any thread may look.
struct ReadCounts {
  ReadCounts() = default;
  explicit ReadCounts(tool::LineCounts& nAllLines) : mLines(&nAllLines) {}

  tool::LineCounts mLines;
  tool::KindCounts mAccepted;    ///< sentences that are parsed; "other": of kinds that are not, for raw listeners only
  tool::KindCounts mUnparsable;  ///< refused by the parser
  std::atomic<uint64_t> mWithoutMode{0};  ///< of these, for want of a mode field: NMEA before 2.3

  uint64_t ignored() const { return mAccepted.get(nfw::NMEA_UNKNOWN); }
  uint64_t accepted() const { return mAccepted.total() - ignored(); }
  uint64_t rejected() const { return mLines.rejected() + mUnparsable.total(); }

  /// "unparsable 12 (9 without a mode field: NMEA before 2.3)"
  std::string unparsableText() const;
  /// "20 read = 17 accepted + 1 rejected + 2 of other kinds"
  std::string text() const;
  /// Behind "no sentence": what came instead, and what it may be.
  std::string explainSilence() const;
  /// Every line has one fate.
  bool addsUp() const { return mLines.total() == accepted() + ignored() + rejected(); }
};

}  // namespace drive
