#pragma once

#include <string>

#include "Lateness.h"
#include "LogReport.h"
#include "PhaseDriver.h"
#include "Progress.h"
#include "Roads.h"

namespace drive {

/// What is told at the end of a run.
struct Summary {
  std::string mSource;
  std::string mEnd;      ///< why it ended
  bool mHasSource;       ///< sentences were read, not only replayed
  bool mIsRealTime;      ///< threads had real-time priorities
  std::string mVerdict;  ///< of a replay: how it compares; else empty
  const Progress& mProgress;
  const Lateness& mLateness;
  const PhaseDriver& mPhases;
  const LogReport& mLog;
  const LogReport& mSensorLog;
  uint64_t mLostLines;  ///< of the output
  const Roads& mRoads;

  std::string toText() const;
  std::string toJson() const;  ///< one object on a line, "type":"summary"
};

}  // namespace drive
