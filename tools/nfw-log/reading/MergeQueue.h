#pragma once

#include <memory>
#include <queue>
#include <vector>

#include "MergeInput.h"
#include "Run.h"

namespace logtool {

/// The records of several recordings in the order of their times; of two at one time that of the first on the command
/// line is first. Recordings of one start of the system are ordered by their ticks, others by the times that they tell.
/// Each is read once and keeps its own order: one record of each is in hand.
class MergeQueue {
 public:
  /// @param nProblems not owned, outlives it, as the run does
  /// @param nIsOfAll records that are not selected come, too: MergeInput::isSelected() tells
  MergeQueue(Run& nRun, Problems& nProblems, bool nIsOfAll = false);

  /// The input with the earliest record; null when there is none.
  MergeInput* next();
  size_t getIndex() const { return mPlaces.top().second; }  ///< of that input, among the run's recordings
  void advance();                                           ///< goes on in the input that is next
  /// Behind the last record: tells the run what was found, and people where a recording is not in order itself.
  void finish();

 private:
  void push(size_t nIndex);

  using Place = std::pair<int64_t, size_t>;
  Run& mRun;
  std::vector<std::unique_ptr<MergeInput>> mInputs;
  std::priority_queue<Place, std::vector<Place>, std::greater<>> mPlaces;
  uint64_t mRead = 0;
};

}  // namespace logtool
