#pragma once

#include "Options.h"
#include "ReadCounts.h"

namespace drive {

/// How one source of a run gets on. Its own thread writes; any thread may look at the atomic ones, at the others only
/// when that thread has ended.
struct SourceProgress : ReadCounts {
  enum State { AWAITED, OPEN, BROKEN, ENDED, FAILED };

  SourceProgress(const SourceAddress& nAddress, tool::LineCounts& nAllLines)
      : ReadCounts(nAllLines), mAddress(nAddress) {}

  const SourceAddress& mAddress;
  std::atomic<State> mState{AWAITED};
  uint64_t mLost = 0;    ///< datagrams, known when it has ended
  std::string mFailure;  ///< why it ended before its end, while others went on; else empty
  ExitCode mExit = EXIT_DONE;

  /// For people, of a source that does not give anything now; else empty.
  std::string stateText() const {
    static const char* const TEXTS[] = {"awaited", "", "broken", "ended", "failed"};
    return TEXTS[mState];
  }
  /// "udp://:10110: 3 datagrams were lost ..."; empty when none was.
  std::string lossText() const {
    if (mLost == 0) return {};
    return mAddress.mName + ": " + std::to_string(mLost) + " datagrams were lost: they came faster than they are read";
  }
  /// Why nothing of it was there to be heard; empty when something was.
  std::string silence() const {
    return accepted() + ignored() > 0 ? "" : mAddress.mName + ": no sentence " + explainSilence();
  }
};

}  // namespace drive
