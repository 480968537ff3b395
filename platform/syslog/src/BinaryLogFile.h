// A file of the binary log and the thread that writes it.
#pragma once

#include <pthread.h>

#include "Clock.h"
#include "FileSeries.h"
#include "RecordBatch.h"
#include "SysLogServiceHost.h"

namespace syslogservice {

/// Takes records without waiting for the file system: they gather in one batch while the thread writes the other one.
/// What a full disk refuses is tried again until the end. Any thread may call; begin(), finish() and release() are
/// called once.
///
/// A file system that does not answer keeps the thread: then it is left behind, and takes the object with it.
class BinaryLogFile {
 public:
  /// Null with errno when there is no file, memory or thread, or the file system does not answer within `nTimeoutMs`.
  /// Without a prefix the directory is the name of one file.
  static BinaryLogFile* open(const BinaryLogFiles& nFiles, unsigned int nSyncMs, unsigned int nTimeoutMs);
  BinaryLogFile(const BinaryLogFile&) = delete;
  BinaryLogFile& operator=(const BinaryLogFile&) = delete;

  void begin();  ///< from now on the file is written
  bool append(const void* npData, unsigned int nSize);
  bool flush(unsigned int nTimeoutMs);
  BinaryLogCounts counts();

  /// Takes nothing any more, and waits until what was taken is written or given up. Returns what became of it.
  BinaryLogCounts finish(unsigned int nTimeoutMs);
  static void release(BinaryLogFile* npFile);  ///< after finish()

 private:
  enum State { OPENING, OPEN, WRITING, ENDED };

  explicit BinaryLogFile(unsigned int nSyncMs) : mSyncNs(nSyncMs * utl::Clock::NS_PER_MS) {}
  int start(const BinaryLogFiles& nFiles);
  int waitUntilOpen(unsigned int nTimeoutMs);
  static void* enter(void* npThis);
  bool run();
  int write(FileSeries::Content* npGone);

#define REQUIRES_LOCK ZTS_ANNOTATION(requires_capability(mMutex))
#define GUARDED ZTS_ANNOTATION(guarded_by(mMutex))
  bool awaitBatchLocked() REQUIRES_LOCK;
  bool mayWriteLocked() const REQUIRES_LOCK;
  void writeLocked() REQUIRES_LOCK;
  void loseLocked(const FileSeries::Content& nContent) REQUIRES_LOCK;
  void syncLocked() REQUIRES_LOCK;
  void hurryLocked() REQUIRES_LOCK;
  BinaryLogCounts countsLocked() const REQUIRES_LOCK;
  unsigned long long doneLocked() const REQUIRES_LOCK { return mCounts.mRecorded + mCounts.mFailed; }

  FileSeries mFiles;    // on the thread only, as what mpWriting points to
  int64_t mSyncNs = 0;  // between a record and its sync; 0: none
  RecordBatch mBatches[2];
  RecordBatch* mpWriting = &mBatches[0];
  pthread_t mThread = {};

  utl::Mutex mMutex;
  utl::Condition mWork;     // the thread waits here
  utl::Condition mChanged;  // and everybody else here
  RecordBatch* mpFilling GUARDED = &mBatches[1];
  State mState GUARDED = OPENING;
  BinaryLogCounts mCounts GUARDED;                  // but mWaiting
  int64_t mFillingSinceNs GUARDED = 0;              // when its first record came; likewise
  int64_t mWritingSinceNs GUARDED = 0;              // of the other batch,
  int64_t mSyncDueNs GUARDED = -1;                  // and when what is in the file is to be on the medium; -1: it is
  unsigned long long mTaken GUARDED = 0;            // records in all
  unsigned long long mFailures GUARDED = 0;         // of writes, in all
  unsigned long long mLastFailure GUARDED = ~0ULL;  // so many, and what is left is given up
  bool mIsHurried GUARDED = false;                  // do not wait for more
  bool mIsFinishing GUARDED = false;                // takes nothing any more
  bool mIsGivenUp GUARDED = false;
  bool mIsLeftBehind GUARDED = false;
#undef REQUIRES_LOCK
#undef GUARDED
};

}  // namespace syslogservice
