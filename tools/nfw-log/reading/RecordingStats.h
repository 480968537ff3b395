#pragma once

#include <map>

#include "IdStats.h"
#include "Problems.h"
#include "RecordingReader.h"
#include "Timeline.h"
#include "WallClock.h"

namespace logtool {

/// What is to be said of a recording, gathered record by record. Lists keep their first entries and count the rest.
class RecordingStats : public Problems {
 public:
  static constexpr size_t MAX_LISTED = 1000;
  static constexpr size_t MAX_IDS = 4096;

  /// A pause, or a tick that goes back.
  struct Break {
    std::string mPath;
    uint64_t mOffset;     ///< of the record behind it
    uint64_t mElapsedMs;  ///< of the record before it, from the begin
    uint64_t mLengthMs;   ///< of a pause
  };
  struct Damage {
    std::string mPath;
    tool::RecordDamage mDamage;
  };

  explicit RecordingStats(uint64_t nGapMs) : mGapMs(nGapMs) {}

  void add(const RecordingReader& nReader, const tool::Record& nRecord);
  void onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) override;
  void onUnreadable(const std::string& nPath, const std::string& nReason) override;

  tool::RecordKind mKind = tool::UNKNOWN_RECORD;
  uint64_t mRecords = 0;
  uint64_t mBytes = 0;  ///< of the records, whole
  std::map<int, IdStats> mIds;
  IdStats mOtherIds;  ///< beyond MAX_IDS
  Timeline mTimeline;
  uint32_t mFirstTick = 0, mLastTick = 0;
  int64_t mFirstTime = NO_TIME, mLastTime = NO_TIME;
  std::vector<Break> mGaps, mBackward;
  uint64_t mGapNum = 0, mBackwardNum = 0;
  std::vector<Damage> mDamages;
  uint64_t mDamageNum = 0, mLostBytes = 0;
  std::vector<std::string> mUnreadable;  ///< "PATH: reason"

 private:
  IdStats& statsOf(int nId);
  void noteTime(const RecordingReader& nReader, const tool::Record& nRecord);
  void noteBreak(bool nIsGap, const Break& nBreak);

  const uint64_t mGapMs;
  WallClock mClock;
  int mLastId = -1;
  IdStats* mpLastStats = nullptr;
};

}  // namespace logtool
