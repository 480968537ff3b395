// What the data logger and the sensor system log do alike: a thread, a gate, and the replay of a file to listeners.
#pragma once

#include <atomic>
#include <memory>

#include "ListenerTable.h"
#include "LogFilePath.h"
#include "NfwLogPlayPosition.h"
#include "NfwOperationControl.h"
#include "NfwThreadSafety.h"
#include "PlayClock.h"
#include "PlayMsgs.h"
#include "PlayTimeline.h"
#include "ServiceRequests.h"
#include "ServiceThread.h"
#include "ZTSync.h"
#include "utl/Array.h"
#include "utl/MsgDrivenThread.h"
#include "utl/SmartPointer.h"

namespace nfw {

class RecordScout;
class TimedReplay;

/// What players are told.
enum PlayNotice { PLAY_START, PLAY_STOP, PLAY_END, PLAY_SEEK };

/// Where the two services differ.
struct PlayFormat {
  const char* mpClass;  // without its namespace, in log lines
  const char* mpReplayClass;
  const char* mpThreadName;
  int mThreadMsgKind;
  const char* mpPathLock;
  const char* mpAttachPlayerLock;
  const char* mpAttachPlayListenerLock;
  int mAttachPlayerMsg;
  int mDetachPlayerMsg;
  int mAttachPlayListenerMsg;
  int mDetachPlayListenerMsg;
  int mStartPlayMsg;
  int mStopPlayMsg;
  int mPlayEndMsg;
  int mShutdownMsg;  // not of the outside: stops the replays on the thread that owns their list
  int mControlMsg;
};

/// Players and replays belong to the service's thread: lists change, players are told and replays are started and
/// stopped there. A service derives what needs its types, and is the listener of the thread.
///
/// A playback is: begun by startPlay() on any thread; started when the thread has taken it up; ended, told once; over
/// with stopPlay().
class PlayService {
 public:
  PlayService(const PlayFormat& nFormat, unsigned int nMaxPlayerNum, unsigned int nMaxReplayNum, const Here& nHere);
  virtual ~PlayService();
  PlayService(const PlayService&) = delete;
  PlayService& operator=(const PlayService&) = delete;

  enum State { CREATED, INITIALIZED, SHUT_DOWN };

  /// An operation of the service: admitted when the gate is open and the state is INITIALIZED.
  class Operation {
   public:
    explicit Operation(PlayService& nService);
    ~Operation();
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;
    explicit operator bool() const { return mIsAdmitted; }
    bool isStarted() const { return mIsStarted; }  ///< the gate is open, whatever the state

   private:
    OperationControl& mControl;
    const bool mIsStarted;
    const bool mIsAdmitted;
  };

  State getState() const { return mState; }
  utl::MsgDrivenThread& thread() { return mThread; }
  ServiceRequests& requests() { return mRequests; }

  /// Starts the thread, then the recorder; INITIALIZED when both were true.
  template <class StartRecorder>
  bool initialize(utl::ThreadMsgListener* npListener, StartRecorder nStartRecorder) {
    const WatchedLock lLock(mLifeSync, mHere.in());
    if (mState != CREATED || !startServiceThread(npListener) || !nStartRecorder()) return false;
    mState = INITIALIZED;
    return true;
  }
  /// Closes the gate and stops the recorder, the replays and the thread; the second call does nothing. A player or a
  /// play listener that stays in its call holds up none but the last, which waits THREAD_STOP_TIMEOUT_MS for it. True:
  /// this call did it, and the thread has ended.
  template <class StopRecorder>
  bool shutdown(StopRecorder nStopRecorder) {
    const WatchedLock lLock(mLifeSync, mHere.in());
    if (!closeGate()) return false;
    nStopRecorder();
    return stopServiceThread();
  }
  /// After a shutdown, before the service is deleted: false when its thread runs on. Then no player and no play
  /// listener is called any more.
  bool hasEnded();

  // Any thread.
  bool attachPlayer(void* npPlayer);
  bool detachPlayer(void* npPlayer);
  bool attachPlayListener(int nLogTypeId, void* npListener);
  bool detachPlayListener(void* npListener);
  bool startPlay(const char* npPath);
  bool startPlay(const char* const* nppPaths, unsigned int nNum);
  bool stopPlay();
  bool pausePlay() { return control("pausePlay", PlayControlMsg::PAUSE, 0); }
  bool resumePlay() { return control("resumePlay", PlayControlMsg::RESUME, 0); }
  bool stepPlay() { return control("stepPlay", PlayControlMsg::STEP, 0); }
  bool setPlayRate(unsigned int nPermille);
  bool seekPlay(unsigned int nOffsetMs);
  LogPlayPosition getPlayPosition();
  bool isPlaying() const { return mIsPlaying; }
  bool getPlayingDir(char* npBuffer, unsigned int nSize);
  void setLogDispatchEnd(TimedReplay* npReplay);

  /// On the service's thread: handles a message, unless it is not one of the playing.
  bool receive(int nMsgId, utl::ThreadRawMsg& nMsg);

 protected:
  virtual void tellPlayer(void* npPlayer, PlayNotice nNotice, int nReason) = 0;
  virtual TimedReplay* createReplay(int nLogTypeId, void* npListener) = 0;
  virtual const RecordFormat& recordFormat() const = 0;

 private:
  class JudgeDispacherMsg;

  bool startServiceThread(utl::ThreadMsgListener* npListener);
  bool closeGate();
  bool stopServiceThread();

  void onAttachPlayer(utl::ThreadRawMsg& nMsg);
  void onDetachPlayer(utl::ThreadRawMsg& nMsg);
  void onAttachPlayListener(utl::ThreadRawMsg& nMsg);
  void onDetachPlayListener(utl::ThreadRawMsg& nMsg);
  void onStartPlay(utl::ThreadRawMsg& nMsg);
  void onStopPlay(utl::ThreadRawMsg& nMsg);
  void onPlayEnd(utl::ThreadRawMsg& nMsg);
  void onShutdown(utl::ThreadRawMsg& nMsg);
  void onControl(utl::ThreadRawMsg& nMsg);

  bool attachPlayerInternal(void* npPlayer);
  bool attachPlayListenerInternal(int nLogTypeId, void* npListener);
  void detachPlayListenerInternal(const void* npListener, unsigned int nLastNumber);
  void stopPlayInternal(unsigned int nPlayNumber);
  void stopReplays();
  bool isAnyReplayPlaying() const;
  bool hasReplay(const TimedReplay* npReplay) const;
  void tellPlayers(PlayNotice nNotice, int nReason);
  void notifyLogPlayEnd(int nReason);

  using Timeline = std::shared_ptr<const PlayTimeline>;

  bool control(const char* npOperation, PlayControlMsg::Operation nOperation, unsigned int nValue);
  void controlInternal(const PlayControlMsg& nMsg);
  void pause(bool nIsPaused);
  void step();
  void setRate(unsigned int nPermille);
  void seek(unsigned int nOffsetMs);
  void retime();
  void startReplays(const char* npPath, uint32_t nZeroTick);
  void startReplaysAt(const Timeline& npTimeline, uint32_t nOffset);
  void sendScout(const char* npPath, const PlayTimeline::Place& nPlace);
  void logNotStarted(const TimedReplay& nReplay) const;
  Timeline makeTimeline(const char* const* nppPaths, unsigned int nNum, const char* npOperation) const;
  Timeline needTimeline();
  Timeline timeline();

  bool startPlay(const char* npPath, const Timeline& npTimeline);
  bool beginPlay(const char* npPath) NFW_REQUIRES(mSync);
  bool markStarted();
  bool isStarted();
  bool claimEnd();
  bool claimStop(unsigned int nPlayNumber);
  unsigned int playNumber();
  void endPlay();
  void reopenEnd();
  bool logFailure(const char* npOperation, const char* npText) const;

  const PlayFormat& mFormat;
  const Here mHere;
  utl::MsgDrivenThread mThread;
  ServiceThreadEnd mThreadEnd;
  ServiceRequests mRequests;
  OperationControl mControl;
  std::atomic<State> mState{CREATED};
  std::atomic<bool> mIsLeftBehind{false};
  ZTSync mLifeSync{"nfw::PlayService_Life"};  // one initialize() or shutdown() at a time

  // On the service's thread only.
  ListenerTable mPlayers;
  std::unique_ptr<RecordScout> mpScout;  // of the replays, once there are several
  utl::Array<utl::SmartPointer<TimedReplay>> mReplays;
  bool mIsStopping = false;                        // stopPlayInternal() runs
  bool mAreReplaysStarted = false;                 // of the playback
  uint32_t mZeroTick = 0;                          // nominal tick of its first record
  unsigned int mSeekNumber = 0;                    // counts the seeks
  unsigned int mStartOffset = 0;                   // where it is to begin, while it is not started
  std::atomic<unsigned int> mLastReplayNumber{0};  // of the attachments so far; asked on any thread

  // Written by a handler, read by the caller who waits for it under the lock of its kind.
  ZTSync mAttachPlayerSync;
  ZTSync mAttachPlayListenerSync;
  bool mAttachPlayerResult = false;
  bool mAttachPlayListenerResult = false;

  ZTSync mSync;  // over the playback's state
  std::atomic<bool> mIsPlaying{false};
  bool mIsStarted NFW_GUARDED_BY(mSync) = false;
  bool mIsEnded NFW_GUARDED_BY(mSync) = false;
  unsigned int mPlayNumber NFW_GUARDED_BY(mSync) = 0;  // counts the playbacks
  char mPlayingFile[LOG_PATH_SIZE] NFW_GUARDED_BY(mSync) = {};
  Timeline mpTimeline NFW_GUARDED_BY(mSync);  // of a playback of several files, or one in which was sought
  PlayClock mClock;
};

}  // namespace nfw
