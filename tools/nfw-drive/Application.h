#pragma once

#include "DisplayComponent.h"
#include "LogFold.h"
#include "PageSwitch.h"
#include "Recorder.h"
#include "RecordingContents.h"
#include "ReplayKeys.h"
#include "Rounds.h"
#include "Screen.h"
#include "SourceComponent.h"
#include "Summary.h"
#include "TerminalGuard.h"

namespace drive {

/// The whole run: builds the components, drives them through the six phases, and tells how it went.
class Application {
 public:
  explicit Application(const Options& nOptions);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  int run();  ///< the exit code

 private:
  bool readReplay();
  bool openRoads();
  bool setUp();
  bool addComponents();
  bool startUp();
  void waitForEnd();
  unsigned int awaitEvents();
  bool drive(Phase nPhase);
  bool driveDown(Phase nPhase);
  bool awaitListeners();
  bool isComparable() const;
  void noteEnd(unsigned int nEvents);
  bool noteSignal(unsigned int nEvents);
  int finish();
  void writeSummary(const std::string& nVerdict);
  bool goesRound();
  void heedKeys();
  bool isLive() const { return mOutput.isTerminal() && mOptions.mFormat == FORMAT_LIVE; }
  bool takesKeys() const { return isLive() && !mOptions.hasSource(SourceAddress::STDIN); }
  void standAside();
  void comeBack();
  std::string compareReplay(bool* npIsSame) const;
  int judge(bool nIsReplaySame) const;
  std::string silence() const;
  bool isAllDelivered() const;
  bool hasSource() const { return !mOptions.mSources.empty(); }
  bool isReplaying() const { return mOptions.mReplay.isWanted(); }
  bool mayHoldSource() const;
  void endOutput();
  void awaitReader();
  bool judgeLogs() const;
  bool judgeRoads() const;
  int judgeSources() const;
  void leave(int nExit);
  [[noreturn]] void abandon();

  const Options& mOptions;
  Events mEvents;  // before every thread: it blocks signals
  LogKinds mLogKinds{mOptions.mFoldsLog};
  LogFold mLog{mLogKinds};
  Failure mFailure{mEvents};
  Progress mProgress;
  Windows mWindows;
  Lateness mLateness;
  RecordingContents mRecorded;  // what is replayed
  Playback mPlayback{mOptions.mReplay};
  Rounds mRounds{mOptions.mReplay, mPlayback, mRecorded, mProgress, mEvents};
  std::optional<TerminalGuard> mTerminal;  // of a live view
  Keys mKeys;
  PageSwitch mPages;
  bool mHasKeys = false;
  bool mIsRealTime = false;
  ReplayKeys mReplayKeys{mOptions.mReplay, mPlayback, mRounds, mLateness};
  OutputQueue mOutput;
  Screen mScreen{mOutput};
  Roads mRoads;
  Recorder mRecorder;
  std::string mEnd;         // why the run ends, empty while it goes on
  unsigned int mAside = 0;  // events that came while listeners were waited for
  bool mIsCutShort = false;
  bool mIsSignalled = false;
  bool mIsReplayWhole = false;
  bool mIsLeftBehind = false;                                   // a thread that cannot be ended
  Events::Clock::duration mPatience = std::chrono::seconds(2);  // with the reader of the output
  std::optional<Events::Clock::time_point> mDeadline;
  Events::Clock::time_point mStopTime;
  utl::MsgDrivenSharedThread mThread;  // of the phases
  nfw::ComponentManager mManager;
  PhaseDriver mPhases;
};

}  // namespace drive
