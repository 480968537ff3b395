#pragma once

#include <algorithm>
#include <functional>
#include <optional>

#include "NfwLogRetention.h"
#include "PacedSink.h"
#include "ServeAddress.h"
#include "Simulator.h"
#include "SourceAddress.h"

namespace drive {

enum Format { FORMAT_LIVE, FORMAT_LINES, FORMAT_JSON, FORMAT_JSONL_RAW, FORMAT_NMEA, FORMAT_NONE };

enum ExitCode {
  EXIT_DONE = 0,
  EXIT_RUNTIME = 1,  ///< something broke on the way
  EXIT_USAGE = 2,    ///< a wrong command line, or a source that cannot be read
};

/// What is recorded, and where.
struct RecordOptions {
  std::string mDirectory;  ///< of the data logger; empty: not recorded
  std::string mDrive;      ///< of the device onto which to record while it is mounted
  std::string mPrefix = "drive";
  std::string mBackup;           ///< a directory to copy beside the recording
  std::string mSensorFile;       ///< of the sensor log; empty: not recorded
  bool mIsSensorSeries = false;  ///< that is a directory, for files that follow one another
  unsigned int mMaxFileSize = 16 * 1024 * 1024;
  unsigned int mBufferSize = 256 * 1024;
  unsigned int mMaxFileTimeMs = 0;    ///< 0: files end by their size alone
  bool mIsAligned = false;            ///< files also end at the multiples of that in the local day
  unsigned int mSyncMs = 1000;        ///< what a power cut loses at most; 0: whatever the system likes
  unsigned int mKeepBeforeSec = 300;  ///< files written to since are kept when that is asked for
  nfw::LogRetentionLimits mKeep;      ///< of the files with this prefix

  static constexpr const char* SENSOR_SUFFIX = "_sensor";  ///< behind the prefix, of the sensor log's files

  bool isLimited() const {
    return mKeep.mMaxTotalSize > 0 || mKeep.mMaxFileNum > 0 || mKeep.mMaxAgeSec > 0 || mKeep.mMinFreeSize > 0;
  }
  bool isWanted() const { return !mDirectory.empty() || !mDrive.empty() || !mSensorFile.empty(); }
};

/// What is played back, and how. The keys change the rate and the place later.
struct ReplayOptions {
  std::vector<std::string> mFiles;        ///< of the data logger, in their order
  std::vector<std::string> mSensorFiles;  ///< of the sensor log
  std::string mName;                      ///< as the command line has it
  unsigned int mRate = NORMAL_RATE;       ///< permille of the recorded pace
  uint32_t mFromMs = 0;                   ///< from the recording's first record
  std::optional<uint32_t> mToMs;          ///< what lies from there on is not played
  bool mIsLooped = false;
  bool mIsPaused = false;  ///< at first

  static constexpr unsigned int NORMAL_RATE = 1000;
  static constexpr int64_t LEAD_MS = 1000;  ///< from the start to the first record
  bool isWanted() const { return !mFiles.empty() || !mSensorFiles.empty(); }
  bool isOfBoth() const { return !mFiles.empty() && !mSensorFiles.empty(); }
  bool isPart() const { return mFromMs > 0 || mToMs; }
};

/// What the command line asks for.
struct Options {
  std::vector<SourceAddress> mSources;  ///< the first is the vehicle's own; empty: only a replay
  SimulatorOptions mSimulator;
  RecordOptions mRecord;
  ReplayOptions mReplay;
  std::optional<int64_t> mWallLimitMs;  ///< ends a run that is not paced by its source
  std::vector<ServeAddress> mServe;
  Format mFormat = FORMAT_LIVE;
  int mLogLevel = 3;
  bool mFoldsLog = true;  ///< nobody asked for a level: lines of the library that repeat are counted
  bool mJudgesChecksums = true;
  bool mShowsDeadReckoning = false;

  /// A receiver, a clock or a recording gives the pace. What comes as fast as it is taken must not hold up others.
  bool isPaced() const {
    if (mSources.empty()) return mReplay.isWanted();
    const auto lIsPaced = [](const SourceAddress& n) { return n.isLive() || (n.mPlay.mPaced && n.mPlay.mSpeed > 0); };
    return std::all_of(mSources.begin(), mSources.end(), lIsPaced);
  }
  bool isPlayedAtOnce() const {
    const auto lIsAtOnce = [](const SourceAddress& n) { return n.mPlay.mPaced && n.mPlay.mSpeed == 0.0; };
    return std::any_of(mSources.begin(), mSources.end(), lIsAtOnce);
  }
  bool hasLiveSource() const {
    return std::any_of(mSources.begin(), mSources.end(), std::mem_fn(&SourceAddress::isLive));
  }
  bool hasSource(SourceAddress::Kind nKind) const {
    return std::any_of(mSources.begin(), mSources.end(), [&](const SourceAddress& n) { return n.mKind == nKind; });
  }

  std::string getName() const { return mReplay.isWanted() ? mReplay.mName : getSourceNames(); }
  std::string getSourceNames() const {
    std::string lNames;
    for (const SourceAddress& lSource : mSources) lNames += (lNames.empty() ? "" : ", ") + lSource.mName;
    return lNames;
  }
};

/// Reads the command line, and the settings file that it names. Without a value the program is to end with *npExit:
/// help or an error was printed.
std::optional<Options> parseCommandLine(int nArgc, const char* const* npArgv, int* npExit);

}  // namespace drive
