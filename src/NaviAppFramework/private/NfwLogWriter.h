// Writes typed, time-stamped records into log record files.
#pragma once

#include <atomic>
#include <cstdint>

#include "FileTime.h"
#include "LogFile.h"
#include "LogFilePath.h"
#include "LogRecordBase.h"
#include "NfwOperationControl.h"
#include "NfwStreamBuffer.h"
#include "NfwThreadSafety.h"
#include "NfwZtFileCopy.h"
#include "RecordTally.h"
#include "RetryInterval.h"
#include "ServiceThread.h"
#include "UnsyncedFiles.h"
#include "ZTSync.h"
#include "utl/Event.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

/// Records go through a ring that the writer's own thread drains into the file; a file that would grow past the limit
/// is followed by a new one. A start may also copy a directory into the recording: until that is done, records are
/// refused. Construct, initialize(), then start(), write(), stop() in turn, shutdown().
///
/// Any thread may call. Two locks: mFileSync over the file, mSync over the ring and everything else, always taken in
/// this order. The thread writes with mFileSync alone, so a caller waits for the disk only when the ring is full, a
/// file is full, or it flushes itself.
class LogWriter : public utl::ThreadMsgListener {
 public:
  static constexpr int SUCCESS = 0;
  static constexpr int FAILURE = 1;
  static constexpr int NOT_ACCEPTED = 2;  ///< not recording, a backup runs, or a log line while the file takes nothing

  /// In bytes: the ring and the largest file (a larger record gets a file of its own).
  LogWriter(unsigned int nBufferSize, unsigned int nMaxLogFileSize);
  ~LogWriter() override;
  LogWriter(const LogWriter&) = delete;
  LogWriter& operator=(const LogWriter&) = delete;

  bool initialize();
  /// The directory exists already; null or empty `npBackupDirectory`: no backup. False while recording, stopping or
  /// backing up, and when no file can be made.
  bool start(const char* npDirectory, const char* npFilePrefix, const char* npBackupDirectory);
  int write(int nLogTypeId, const void* npData, unsigned int nSize);
  void flush();  ///< what is buffered goes to the file
  void stop();   ///< cancels a backup and waits for its end
  void shutdown();
  bool hasEnded() { return mThreadEnd.isOver(mThread); }  ///< after shutdown(): false when the thread runs on
  bool isRecording() const { return mIsRecording; }

  /// The thread syncs every `nIntervalMs` what came into files since the last time; 0 (the default): never. False when
  /// not initialised, or without a timer.
  bool setSyncInterval(unsigned int nIntervalMs);
  /// From the next file on: how long one is written to, 0 (the default) without end.
  void setMaxFileTime(unsigned int nLimitMs, bool nIsAligned);

  LogRecordCounts getRecordCounts();  ///< waits for the disk
  LogBackup getBackup() const { return static_cast<LogBackup>(mBackup.load()); }
  /// A record that did not come as far as write().
  void refuse(LogLoss nReason);

  bool open();
  void close();

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;
  void onWriteFile(utl::ThreadRawMsg& nMsg);
  void onBackup(utl::ThreadRawMsg& nMsg);
  void onSyncTimer(utl::ThreadRawMsg& nMsg);

 private:
  struct Record {
    int mId;
    const void* mpData;
    unsigned int mSize;

    unsigned int id() const { return static_cast<unsigned int>(mId); }
    uint64_t size() const { return uint64_t{mSize} + LogRecord::OVERHEAD; }
  };

  bool isInitialized() const { return mState == INITIALIZED; }
  bool isRefusing() const NFW_REQUIRES(mSync) { return mIsRecording && mStoppingCount == 0 && mIsBackingUp; }
  bool isAccepting() const NFW_REQUIRES(mSync) { return mIsRecording && mStoppingCount == 0 && !mIsBackingUp; }
  uint64_t currentSize() const NFW_REQUIRES(mSync) { return mFile.size() + mBuffer.size(); }
  bool fitsFile(const Record& nRecord) const NFW_REQUIRES(mSync) {
    return mFile.isOpen() && currentSize() + nRecord.size() <= mMaxLogFileSize && !mFileTime.isOver();
  }

  bool startLocked(const char* npDirectory, const char* npFilePrefix) NFW_REQUIRES(mFileSync, mSync);
  void clearPaths() NFW_REQUIRES(mSync);
  void postBackup(const char* npDirectory) NFW_REQUIRES(mSync);
  void setBackupIdle(bool nIsIdle);
  bool makeBackupPath(const char* npSource, char (&nPath)[LOG_PATH_SIZE]);

  bool openLocked() NFW_REQUIRES(mFileSync, mSync);
  bool createFile(LogFile& nFile) NFW_REQUIRES(mSync);
  bool beginReplacement(LogFile& nFile) NFW_REQUIRES(mSync);
  bool endReplacement(LogFile& nFile, bool nIsWritten) NFW_REQUIRES(mFileSync, mSync);
  void closeLocked() NFW_REQUIRES(mFileSync, mSync);
  void endFile() NFW_REQUIRES(mFileSync);
  /// Asks the disk: not with the callers' lock.
  bool isFileLost() const NFW_REQUIRES(mFileSync) NFW_EXCLUDES(mSync) { return mFile.isOpen() && !mFile.hasName(); }
  bool rotate(const Record& nRecord) NFW_REQUIRES(mFileSync, mSync);

  bool isHeldBack(const Record& nRecord) const;
  bool isSimple(const Record& nRecord) const NFW_REQUIRES(mSync);
  static bool isSound(const Record& nRecord);
  bool isValid(const Record& nRecord) const;
  int refuseUntaken() NFW_REQUIRES(mSync);
  int tally(const Record& nRecord, int nResult) NFW_REQUIRES(mSync);
  LogLoss lossOf(const Record& nRecord) const NFW_REQUIRES(mSync);
  void dropBuffer() NFW_REQUIRES(mFileSync, mSync);
  int writeWithFile(const Record& nRecord) NFW_REQUIRES(mFileSync, mSync);
  int buffer(const Record& nRecord) NFW_REQUIRES(mSync);
  int writeDirectly(const Record& nRecord) NFW_REQUIRES(mFileSync, mSync);
  bool moveTop(LogFile& nFile) NFW_REQUIRES(mSync);
  void flushForRoom(const Record& nRecord) NFW_REQUIRES(mFileSync, mSync);
  bool takeWake() NFW_REQUIRES(mSync);
  bool postWriteFile();

  int topPiece(uint64_t nLimit, const unsigned char** nppBytes, const char* npOperation) NFW_REQUIRES(mSync);
  bool endPiece(bool nIsWritten, int nSize, const char* npOperation) NFW_REQUIRES(mFileSync, mSync);
  bool flushLocked() NFW_REQUIRES(mFileSync, mSync);
  bool drain(uint64_t nLimit, const char* npOperation) NFW_REQUIRES(mFileSync) NFW_EXCLUDES(mSync);
  bool isSyncing() const { return mSyncTimerId != -1; }
  void noteUnsynced() NFW_REQUIRES(mFileSync);
  bool takeUnsynced(UnsyncedFiles* npFiles);
  void sync(const UnsyncedFiles& nFiles);

  enum State { CREATED, INITIALIZED, SHUT_DOWN };

  utl::MsgDrivenThread mThread;
  ServiceThreadEnd mThreadEnd;
  ZTSync mFileSync{"nfw::LogWriter_File"};  // before mSync: over the file and the front of the ring
  ZTSync mSync{"nfw::LogWriter"};
  LogFile mFile;  // changed under both locks, written to under mFileSync, asked under either
  StreamBuffer mBuffer NFW_GUARDED_BY(mSync);
  LogRecordBase mBase NFW_GUARDED_BY(mSync);
  FileTime mFileTime NFW_GUARDED_BY(mSync);
  UnsyncedFiles mUnsynced NFW_GUARDED_BY(mFileSync);
  uint64_t mSyncedSize NFW_GUARDED_BY(mFileSync) = 0;  // of the open file
  bool mIsSyncFailing = false;                         // on the thread, then on who shuts down
  std::atomic<int> mSyncTimerId{-1};                   // changed under mSync; -1: no interval is set
  ZtFileCopy mFileCopy;
  std::atomic<int> mState{CREATED};
  std::atomic<bool> mIsRecording{false};
  std::atomic<bool> mIsBackingUp{false};  // goes with mBackupIdle, for those who only ask
  std::atomic<bool> mIsWakePosted{false};
  std::atomic<bool> mHasFlushFailed{false};  // the last one; of the open file
  std::atomic<bool> mIsShuttingDown{false};
  bool mHasDirectFailed NFW_GUARDED_BY(mSync) = false;  // the last record that did not go through the ring
  RetryInterval mReplacing NFW_GUARDED_BY(mSync);
  RetryInterval mFlushingForLines NFW_GUARDED_BY(mSync);
  std::atomic<int> mBackup{LOG_BACKUP_NONE};
  RecordTally mTally NFW_GUARDED_BY(mSync);
  unsigned int mStoppingCount NFW_GUARDED_BY(mSync) = 0;  // stop() calls under way
  const unsigned int mMaxLogFileSize;
  char mDirectory[LOG_PATH_SIZE] NFW_GUARDED_BY(mSync) = {};  // both empty when not recording
  char mFilePrefix[LOG_PATH_SIZE] NFW_GUARDED_BY(mSync) = {};
  OperationControl mControl;
  utl::Event mBackupIdle{true};
};

}  // namespace nfw
