#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace logtool {

/// Which stretches of UTC a track told of.
class Coverage {
 public:
  void add(int64_t nUtcMs) {
    if (nUtcMs < 0) return;
    const bool lGoesOn =
        !mStretches.empty() && nUtcMs >= mStretches.back().mFrom && nUtcMs <= mStretches.back().mTo + PAUSE_MS;
    if (!lGoesOn && mStretches.size() < MAX_STRETCHES) mStretches.push_back({nUtcMs, nUtcMs});
    if (mStretches.back().mTo < nUtcMs) mStretches.back().mTo = nUtcMs;
  }
  bool isEmpty() const { return mStretches.empty(); }
  bool has(int64_t nUtcMs) const {
    for (const Stretch& lStretch : mStretches) {
      if (nUtcMs >= lStretch.mFrom - SLACK_MS && nUtcMs <= lStretch.mTo + SLACK_MS) return true;
    }
    return false;
  }

 private:
  static constexpr int64_t PAUSE_MS = 10000;
  static constexpr int64_t SLACK_MS = 1000;  // two recorders of one drive do not begin and end with the same sentence
  static constexpr size_t MAX_STRETCHES = 1000;
  struct Stretch {
    int64_t mFrom, mTo;
  };
  std::vector<Stretch> mStretches;
};

}  // namespace logtool
