// Plays the records of one log type id out of a file to one listener, each at its recorded time.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "NfwOperationControl.h"
#include "NfwThreadSafety.h"
#include "PlayClock.h"
#include "PlayTimeline.h"
#include "RecordReader.h"
#include "ReplayTiming.h"
#include "Watched.h"
#include "ZTSync.h"
#include "utl/Array.h"
#include "utl/Map.h"
#include "utl/MemoryPool.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

class RecordScout;

/// What the replays of the two kinds of file differ in, besides their readers.
struct ReplayFormat {
  static constexpr unsigned int THREAD_NAME_SIZE = 43;
  static constexpr unsigned int ID_TEXT_SIZE = 12;

  const char* mpClass;  // without its namespace, in log lines
  const char* mpLockName;
  const char* mpPoolName;
  ReplayTiming::Rule mRule;
  unsigned int mQueueLength;
  unsigned int (*mpMaxMsgDataSize)();
  void (*mpThreadName)(int nLogTypeId, char (&nName)[THREAD_NAME_SIZE]);
  void (*mpIdText)(int nLogTypeId, char (&nText)[ID_TEXT_SIZE]);
};

/// Reads up to 52 records ahead; each waits in a block of a pool for a one-shot timer of this replay's own thread. The
/// thread runs from start() to stop(). Its handlers hold the gate, which stop() closes; the listener is called without
/// a lock.
///
/// The owning service starts and stops it on its own thread and is told when there is nothing more to play.
class TimedReplay : public utl::ThreadMsgListener {
 public:
  /// One pending record.
  struct LogInfo {
    uint64_t mPosition = 0;  // in the file
    uint32_t mTime = 0;      // recorded, milliseconds
    uint32_t mSize = 0;
    int mVersion = 0;  // sensor records only
    void* mpData = nullptr;
    uint32_t mNominal = 0;  // the tick at which a playback that nobody touches brings it
    uint32_t mNumber = 0;   // counts the records read
  };

  /// A start anywhere in a recording of one file or several.
  struct Start {
    uint32_t mZeroTick = 0;  // nominal tick of the recording's first record
    std::shared_ptr<const PlayTimeline> mpTimeline;
    PlayTimeline::Place mPlace;  // a record of any log type
    uint32_t mFromOffset = 0;    // milliseconds from the first record; what lies before is not played
  };

  TimedReplay(const TimedReplay&) = delete;
  TimedReplay& operator=(const TimedReplay&) = delete;

  /// `nStartTick`: the tick at which the file's first record is due. False when it plays already, the file cannot be
  /// opened or is empty, or the thread cannot be had.
  bool start(unsigned int nStartTick, const char* npPath);
  bool start(const Start& nStart);
  /// Before the first start: the playback's. Without one nominal ticks count.
  void setClock(const PlayClock& nClock) { mpClock = &nClock; }
  /// Before a start: what the replays of a playback share; it is where the start is. Null for a single one.
  void setScout(RecordScout* npScout) { mpScout = npScout; }
  /// The clock has changed: what is pending is due at other ticks. Does nothing while not playing.
  void retime();
  /// The nominal tick of what it plays next, where that waits for the clock. Reads ahead when it has to.
  bool nextHeld(uint32_t* npNominalTick);

  /// Waits for a callback under way; not from the replay's own thread.
  void stop();
  /// Drops what is pending and tells the service. The thread stays until stop().
  void endDispatch();
  void clearLogInfoMap();
  bool isPlaying() const;  ///< a thread exists, or stop() runs

  int getLogTypeId() const { return mLogTypeId; }
  const char* getIdText() const { return mIdText; }
  const void* getListenerAddress() const { return mpListener; }
  void setNumber(unsigned int nNumber) { mNumber = nNumber; }  ///< the service's, of this attachment; on its thread
  unsigned int getNumber() const { return mNumber; }

  /// The replay whose listener the calling thread is in, null elsewhere. There, waiting for the service would be
  /// waiting for oneself: the service waits for this callback when it stops the replay.
  static TimedReplay* delivering();
  /// From inside the callback: it is the last one.
  void mute() { mIsMuted = true; }
  /// Before the first start: the service's own word that no listener is called any more.
  void muteWith(const std::atomic<bool>& nIsMuted) { mpIsServiceMuted = &nIsMuted; }

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 protected:
  /// Takes the reader. `npListener` is only an address here.
  TimedReplay(const ReplayFormat& nFormat, int nLogTypeId, const void* npListener, RecordReader* npReader,
              unsigned int nMaxDataSize, const Here& nHere);

  virtual void deliver(const LogInfo& nInfo) = 0;  ///< calls the listener
  virtual void tellEnd() = 0;                      ///< tells the service; only posts

 private:
  enum Outcome { SCHEDULED, SKIPPED, AT_END, IS_CANCELED, FAILED };

  template <class Open>
  bool startWith(Open nOpen);
  bool openFile(const char* npPath, unsigned int* npFirstTime) NFW_REQUIRES(mSync);
  bool openNextFile() NFW_REQUIRES(mSync);
  void enterStretch(uint64_t nPosition) NFW_REQUIRES(mSync);
  bool isBeforeStart(uint32_t nNominalTick) const NFW_REQUIRES(mSync);
  utl::MsgDrivenThread* newThread() NFW_REQUIRES(mSync);
  void discardThread(std::unique_ptr<utl::MsgDrivenThread> npThread);
  void onSetTimer(utl::ThreadRawMsg& nMsg);
  void onTimer(utl::ThreadRawMsg& nMsg);
  bool readAhead() NFW_REQUIRES(mSync);
  Outcome readOne(RecordReader::Batch& nBatch) NFW_REQUIRES(mSync);
  Outcome readRecord(RecordReader::Batch& nBatch, LogInfo* npInfo) NFW_REQUIRES(mSync);
  Outcome schedule(const LogInfo& nInfo) NFW_REQUIRES(mSync);
  Outcome arm(const LogInfo& nInfo, bool nIsLateTold) NFW_REQUIRES(mSync);
  int setTimer(uint32_t nDue, const LogInfo* npLate, unsigned int* npInterval) NFW_REQUIRES(mSync);
  void holdPending() NFW_REQUIRES(mSync);
  bool armHeld() NFW_REQUIRES(mSync);
  bool followClock() NFW_REQUIRES(mSync);
  bool isStale(const LogInfo* npInfo) const NFW_REQUIRES(mSync);
  void logDelay(uint32_t nDelay, const LogInfo& nInfo) const;
  Outcome takePending(utl::ThreadRawMsg& nMsg, LogInfo* npInfo) NFW_EXCLUDES(mSync);
  void callListener(const LogInfo& nInfo);
  bool postSetTimer(utl::MsgDrivenThread& nThread) const;
  void fail(const char* npOperation, const char* npText) const;

  const ReplayFormat& mFormat;
  const int mLogTypeId;
  const void* const mpListener;
  const unsigned int mMaxDataSize;
  const Here mHere;
  char mIdText[ReplayFormat::ID_TEXT_SIZE];
  unsigned int mNumber = 0;
  mutable ZTSync mSync;
  std::unique_ptr<utl::MsgDrivenThread> mpThread NFW_GUARDED_BY(mSync);  // while playing
  std::atomic<bool> mHasThread{false};                                   // goes with it, for those who only ask
  std::atomic<bool> mIsMuted{false};
  const std::atomic<bool>* mpIsServiceMuted = &mIsMuted;  // not owned
  const std::unique_ptr<RecordReader> mpReader;
  ReplayTiming mTiming NFW_GUARDED_BY(mSync);
  utl::Map<int, LogInfo> mPending NFW_GUARDED_BY(mSync);  // by timer id
  utl::Array<LogInfo> mHeld NFW_GUARDED_BY(mSync);        // not due before the clock goes on, in their order
  uint32_t mReadNumber NFW_GUARDED_BY(mSync) = 0;
  const PlayClock* mpClock = nullptr;                   // not owned
  RecordScout* mpScout = nullptr;                       // not owned
  unsigned int mClockNumber NFW_GUARDED_BY(mSync) = 0;  // the clock's change under which the timers were set
  Start mStart NFW_GUARDED_BY(mSync);
  unsigned int mFile NFW_GUARDED_BY(mSync) = 0;  // of the timeline, being read
  const PlayTimeline::Stretch* mpStretch NFW_GUARDED_BY(mSync) = nullptr;
  std::atomic<bool> mIsStopping{false};
  std::unique_ptr<utl::MemoryPool> mpPool;  // from the first start on
  mutable OperationControl mControl;
};

}  // namespace nfw
