#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "NfwLogRetention.h"
#include "Selection.h"

namespace logtool {

enum ExitCode {
  EXIT_DONE = 0,
  EXIT_FOUND = 1,    ///< check found something wrong, or the output could not be written
  EXIT_TROUBLE = 2,  ///< a wrong command line, or an input that cannot be read
};

/// What the command line asks for.
struct Options {
  std::vector<std::string> mInputs;
  std::string mOutput = "-";
  bool mForce = false;
  bool mJson = false;
  bool mHex = false;
  bool mFollow = false;
  bool mSort = false;  ///< cat, filter, convert: the records of all recordings in the order of their times
  bool mHtml = false;
  bool mByTime = false;           ///< merge: by the clock instead of the ticks
  std::string mFormat;            ///< of convert
  std::string mName;              ///< of the document; empty: that of the recording
  bool mLines = false;            ///< convert --to geojson: lines instead of points
  bool mAppend = false;           ///< convert --to gpkg: to a package that is there
  std::string mColour = "speed";  ///< of the plot's track: speed or fix
  uint64_t mGapMs = 5000;         ///< a pause from which on info tells of it
  nfw::LogRetentionLimits mKeep;  ///< of each recording, when it is pruned
  std::string mPrefix;            ///< prune: the recording of it alone; empty: all
  bool mIsDryRun = false;         ///< prune: tells, and deletes nothing
  Selection mSelection;
};

}  // namespace logtool
