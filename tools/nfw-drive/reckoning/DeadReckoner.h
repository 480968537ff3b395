#pragma once

#include <string_view>

#include "EpochCycle.h"
#include "MotionSensor.h"
#include "Reckoning.h"

namespace drive {

/// Makes reports of dead reckoning from the sentences of a receiver, one for each epoch of which RMC or GGA came. An
/// epoch ends with the sentence that is the last of the receiver's cycle, once that is known; else when a sentence of
/// another time begins the next.
///
/// With a fix a report tells what the sentences of its epoch told; what of RMC, VTG, GGA and $PUBX did not come is made
/// of the others. Without one the position goes on from the last fix by motion and time, as an estimated one (quality
/// 6, mode E, status DR), the DOPs and the horizontal accuracy grow, and no satellite is used. Before the first fix
/// nothing is valid. Over a gap of more than ten seconds the position stays where it was.
///
/// One thread at a time. Nothing is allocated.
class DeadReckoner {
 public:
  using Report = ZTSDeadReckoningDef::DRG_LOCATION_INFO;

  /// @param npMotion asked at the first sentence of each epoch; null: speed and course are held from the last fix. Not
  /// owned, outlives the reckoner.
  explicit DeadReckoner(const MotionSensor* npMotion) : mpMotion(npMotion) {}

  /// Takes one sentence. The report of the epoch before when this one begins a new one, valid until the next call; else
  /// null.
  const Report* onSentence(std::string_view nSentence);
  /// Behind onSentence(): the report of the epoch under way when that was its last sentence, valid until the next call;
  /// else null.
  const Report* takeComplete();
  const Report* finish();  ///< the report of the last epoch, or null

 private:
  void beginEpoch(int64_t nTimeMs);
  const Report* endEpoch();
  void writeFix();
  void writeEstimate();
  void writeNothing();

  const MotionSensor* const mpMotion;
  EpochCycle mCycle;
  bool mIsComplete = false;  // the newest sentence was the last of its epoch
  bool mIsReported = false;  // the epoch under way
  int64_t mTimeMs = -1;      // of the epoch under way, of the day
  Motion mMotion = {};       // at its begin
  EpochRecords mRecords;
  Reckoning mReckoning;
  Report mReport = {};
};

}  // namespace drive
