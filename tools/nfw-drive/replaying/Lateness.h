#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "Events.h"

namespace drive {

/// How much later than recorded a replay hands its records on. begin() comes before the first note(); the rest is on
/// one thread, and what it found is read when that has ended.
class Lateness {
 public:
  using Clock = Events::Clock;

  /// @param nDues of the records, in milliseconds of the recording from what is due a second after the start
  /// @param nRate permille of the recorded pace
  void begin(std::vector<uint32_t> nDues, unsigned int nRate);
  /// Somebody has changed the pace or the place: what comes from here on is not measured. Any thread.
  void stop() { mIsOver = true; }
  /// The replay is asked for. Recordings and replays count in whole milliseconds.
  void start() { mStart = std::chrono::floor<std::chrono::milliseconds>(Clock::now()); }
  void note();  ///< the next record is here

  bool isEmpty() const { return mLate.empty(); }
  double quantile(double nPart) const;           ///< milliseconds
  double early() const;                          ///< the most that one came too early, in milliseconds; 0: none did
  double duration() const { return mDuration; }  ///< seconds from the start to the last record

 private:
  std::vector<uint32_t> mDues;
  double mRate = 1.0;
  std::atomic<bool> mIsOver{false};
  Clock::time_point mStart;
  std::vector<float> mLate;  // milliseconds; its room is taken in begin()
  double mDuration = 0.0;
};

}  // namespace drive
