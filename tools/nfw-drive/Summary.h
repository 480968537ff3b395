#pragma once

#include <string>

#include "PhaseDriver.h"
#include "Progress.h"

namespace drive {

/// What is told at the end of a run.
struct Summary {
  std::string mSource;
  std::string mEnd;  ///< why it ended
  const Progress& mProgress;
  const PhaseDriver& mPhases;

  std::string toText() const;
  std::string toJson() const;  ///< one object on a line, "type":"summary"
};

}  // namespace drive
