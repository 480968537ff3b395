// A file of the binary log and the thread that writes it.
#pragma once

#include <limits.h>
#include <pthread.h>

#include "Clock.h"
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
  static BinaryLogFile* open(const char* npPath, unsigned int nTimeoutMs);
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

  BinaryLogFile() = default;
  ~BinaryLogFile();
  int start(const char* npPath);
  int waitUntilOpen(unsigned int nTimeoutMs);
  static void* enter(void* npThis);
  bool run();
  int openFile();

#define REQUIRES_LOCK ZTS_ANNOTATION(requires_capability(mMutex))
#define GUARDED ZTS_ANNOTATION(guarded_by(mMutex))
  bool awaitBatchLocked() REQUIRES_LOCK;
  bool mayWriteLocked() const REQUIRES_LOCK;
  void writeLocked() REQUIRES_LOCK;
  void hurryLocked() REQUIRES_LOCK;
  BinaryLogCounts countsLocked() const REQUIRES_LOCK;

  char mPath[PATH_MAX] = {};
  int mFile = -1;  // on the thread only, as what mpWriting points to
  RecordBatch mBatches[2];
  RecordBatch* mpWriting = &mBatches[0];
  pthread_t mThread = {};

  utl::Mutex mMutex;
  utl::Condition mWork;     // the thread waits here
  utl::Condition mChanged;  // and everybody else here
  RecordBatch* mpFilling GUARDED = &mBatches[1];
  State mState GUARDED = OPENING;
  BinaryLogCounts mCounts GUARDED;                  // but mWaiting
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
