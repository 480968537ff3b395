#pragma once

#include <optional>
#include <string>
#include <vector>

#include "FixEpoch.h"

namespace drive {

/// What the live view fills the terminal with.
enum class Page { OVERVIEW, SATELLITES, LOG };

/// Everything that the live view shows, as it is to be laid out.
struct LiveState {
  struct Log {
    std::string mName;
    uint64_t mRecorded = 0, mMissing = 0, mBytes = 0;
  };

  struct Source {
    std::string mName;
    std::string mTrouble;  ///< "awaited", "broken", "ended", "failed"; empty: none
    std::string mFix, mTime;
    FixValues mReceived;
    unsigned int mSilence = 0;
    uint64_t mRead = 0, mRejected = 0;
  };

  Page mPage = Page::OVERVIEW;
  bool mHasKeys = false;
  bool mIsReplay = false;
  std::string mSource;
  std::string mReplay;        ///< where it stands
  unsigned int mSilence = 0;  ///< whole seconds since the last sentence of a source that is live

  std::string mTime, mFix;  ///< "2026-01-31T08:00:12.300Z"; "none", "reckoned", "fix", "2D", "3D"
  std::string mQuality;     ///< "gps" ..., empty: not told
  FixValues mReceived;
  std::optional<FixValues> mReckoned;
  bool mIsReckonedOfEpoch = false;  ///< it is of the same time as what was received
  double mPdop = std::nan(""), mHdop = std::nan(""), mVdop = std::nan("");
  int mUsed = -1;  ///< satellites, -1: not told
  std::vector<Sky::Satellite> mSatellites;
  std::string mSkyTime;  ///< of the epoch that told them

  uint64_t mSentences = 0;  ///< delivered
  std::string mKinds, mRejects;
  uint64_t mRejected = 0;
  std::vector<Source> mSources;  ///< when there are several; the first is that of all the rest
  std::vector<Log> mLogs;        ///< that are recorded
  uint64_t mErrors = 0, mWarnings = 0, mOthers = 0;
  std::vector<std::string> mLogLines;  ///< the last at the end
};

}  // namespace drive
