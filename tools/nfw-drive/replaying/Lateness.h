#pragma once

#include <string>
#include <vector>

#include "Events.h"

namespace drive {

/// How much later than recorded a replay hands its records on. begin() comes before the first note(); the rest is on
/// one thread, and what it found is read when that has ended.
class Lateness {
 public:
  using Clock = Events::Clock;

  /// @param nTicks when the records were made, in milliseconds; the first record of the file counts as due a second
  /// after the start
  void begin(std::vector<uint32_t> nTicks, uint32_t nFirstTick);
  /// The replay is asked for. Recordings and replays count in whole milliseconds.
  void start() { mStart = std::chrono::floor<std::chrono::milliseconds>(Clock::now()); }
  void note();  ///< the next record is here

  bool isEmpty() const { return mLate.empty(); }
  double quantile(double nPart) const;           ///< milliseconds
  double early() const;                          ///< the most that one came too early, in milliseconds; 0: none did
  double duration() const { return mDuration; }  ///< seconds from the start to the last record

 private:
  std::vector<uint32_t> mTicks;
  uint32_t mFirstTick = 0;
  Clock::time_point mStart;
  std::vector<float> mLate;  // milliseconds; its room is taken in begin()
  double mDuration = 0.0;
};

}  // namespace drive
