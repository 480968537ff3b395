// Counts what becomes of the records that a log writer is offered.
#pragma once

#include "NfwLogRecordCounts.h"

namespace nfw {

/// Not locked: its owner sees to that.
class RecordTally {
 public:
  /// A new file begins: what is taken from here on goes with it.
  void beginFile() { mEarlier = mCounts; }

  void take(unsigned long long nSize) {
    ++mCounts.mRecorded;
    mCounts.mBytes += nSize;
  }
  void refuse(LogLoss nReason, int nError = 0) {
    ++mCounts.mRefused;
    note(nReason, nError);
  }
  /// One that was taken is lost after all.
  void lose(unsigned long long nSize, LogLoss nReason, int nError = 0) {
    --mCounts.mRecorded;
    mCounts.mBytes -= nSize;
    ++mCounts.mFailed;
    note(nReason, nError);
  }

  const LogRecordCounts& get() const { return mCounts; }

  /// The counts with everything of the present file lost.
  LogRecordCounts withoutFile() const {
    LogRecordCounts lCounts = mCounts;
    if (mCounts.mRecorded <= mEarlier.mRecorded) return lCounts;
    lCounts.mFailed += mCounts.mRecorded - mEarlier.mRecorded;
    lCounts.mRecorded = mEarlier.mRecorded;
    lCounts.mBytes = mEarlier.mBytes;
    lCounts.mReason = LOG_LOSS_REMOVED;
    lCounts.mError = 0;
    return lCounts;
  }
  void loseFile() { mCounts = withoutFile(); }

  /// What is still buffered, of the records that were taken.
  void noteBuffered(unsigned long long nRecordNum, unsigned long long nSize) {
    mBufferedNum = nRecordNum;
    mBufferedSize = nSize;
  }
  /// Another file takes the place of the present one, and what was noted as buffered; the rest stays, or is lost.
  void moveOn(bool nIsFileLost) {
    mCounts.mRecorded -= mBufferedNum;
    mCounts.mBytes -= mBufferedSize;
    if (nIsFileLost) loseFile();
    beginFile();
    mCounts.mRecorded += mBufferedNum;
    mCounts.mBytes += mBufferedSize;
  }

 private:
  void note(LogLoss nReason, int nError) {
    mCounts.mReason = nReason;
    mCounts.mError = nError;
  }

  LogRecordCounts mCounts;
  LogRecordCounts mEarlier;  // when the file began
  unsigned long long mBufferedNum = 0;
  unsigned long long mBufferedSize = 0;
};

}  // namespace nfw
