#include "BinaryLogFile.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <new>
#include <utility>

#include "SeamState.h"

namespace syslogservice {

namespace {

const unsigned int GATHER_MS =
    100;  // a record waits so long for others; then it is only the file system that it waits for
const size_t STACK_SIZE = 256 * 1024;

int64_t deadlineOf(unsigned int nTimeoutMs) { return utl::Clock::realNs() + nTimeoutMs * utl::Clock::NS_PER_MS; }

// Signals are the application's threads' business. A pipe whose reader has gone gives an error here and no signal.
int createThread(pthread_t* npThread, void* (*npEnter)(void*), void* npArgument) {
  sigset_t lAll, lBefore;
  sigfillset(&lAll);
  pthread_attr_t lAttr;
  pthread_attr_init(&lAttr);
  pthread_attr_setstacksize(&lAttr, STACK_SIZE);
  pthread_sigmask(SIG_BLOCK, &lAll, &lBefore);
  const int lError = seams::fails(seams::THREAD_START) ? EAGAIN : pthread_create(npThread, &lAttr, npEnter, npArgument);
  pthread_sigmask(SIG_SETMASK, &lBefore, nullptr);
  pthread_attr_destroy(&lAttr);
  return lError;
}

}  // namespace

BinaryLogFile* BinaryLogFile::open(const BinaryLogFiles& nFiles, unsigned int nSyncMs, unsigned int nTimeoutMs) {
  BinaryLogFile* const lpFile = new (std::nothrow) BinaryLogFile(nSyncMs);
  int lError = lpFile == nullptr ? ENOMEM : lpFile->start(nFiles);
  if (lError == 0) {
    lError = lpFile->waitUntilOpen(nTimeoutMs);
    if (lError == 0) return lpFile;
    release(lpFile);
  } else {
    delete lpFile;
  }
  errno = lError;
  return nullptr;
}

/// The thread opens the file. On an error there is no thread.
int BinaryLogFile::start(const BinaryLogFiles& nFiles) {
  int lError = mFiles.set(nFiles);
  if (!mBatches[0].hasMemory() || !mBatches[1].hasMemory()) lError = ENOMEM;
  return lError == 0 ? createThread(&mThread, &BinaryLogFile::enter, this) : lError;
}

int BinaryLogFile::waitUntilOpen(unsigned int nTimeoutMs) {
  const int64_t lDeadline = deadlineOf(nTimeoutMs);
  utl::MutexLock lLock(mMutex);
  while (mState == OPENING && mChanged.wait(mMutex, lDeadline)) {
  }
  if (mState == OPEN) return 0;
  mIsGivenUp = true;
  return mState == OPENING ? ETIMEDOUT : mCounts.mError;
}

void* BinaryLogFile::enter(void* npThis) {
  BinaryLogFile* const lpThis = static_cast<BinaryLogFile*>(npThis);
  pthread_setname_np(pthread_self(), "SysLog");
  if (lpThis->run()) delete lpThis;
  return nullptr;
}

/// Writes until the end. True when nobody waits for it any more.
bool BinaryLogFile::run() {
  const int lError = mFiles.open();
  utl::MutexLock lLock(mMutex);
  mCounts.mError = lError;
  mState = lError == 0 ? OPEN : ENDED;
  mChanged.broadcast();
  if (lError == 0) {
    while (awaitBatchLocked()) writeLocked();
    mpWriting->cutBack(mFiles.get());  // nothing to do but for a file system that answered too late
  }
  mMutex.unlock();
  if (mSyncNs > 0) mFiles.sync();
  const bool lIsGone = mFiles.isGone();
  mMutex.lock();
  if (lIsGone) loseLocked(mFiles.content());
  mState = ENDED;
  mChanged.broadcast();
  return mIsLeftBehind;
}

/// Waits for records, and then for more of them. False when the thread is to end.
bool BinaryLogFile::awaitBatchLocked() {
  while (!mIsGivenUp && !mayWriteLocked()) {
    if (mState == WRITING && mIsFinishing) return false;
    if (!mWork.wait(mMutex, mSyncDueNs)) syncLocked();
  }
  const bool lIsUnderWay = !mpWriting->isDone() && mCounts.mError == 0;
  const int64_t lGatherNs = GATHER_MS * utl::Clock::NS_PER_MS;
  const int64_t lDeadline = utl::Clock::realNs() + (mSyncNs > 0 ? std::min(mSyncNs / 2, lGatherNs) : lGatherNs);
  while (!lIsUnderWay && !mIsHurried && !mIsFinishing && mWork.wait(mMutex, lDeadline)) {
  }
  if (mIsGivenUp || mFailures >= mLastFailure) return false;
  if (!mpWriting->isDone()) return true;
  mIsHurried = false;
  mpWriting->clear();
  mWritingSinceNs = mFillingSinceNs;
  std::swap(mpWriting, mpFilling);
  return true;
}

bool BinaryLogFile::mayWriteLocked() const {
  return mState == WRITING && !(mpWriting->isDone() && mpFilling->isEmpty());
}

void BinaryLogFile::writeLocked() {
  RecordBatch& lBatch = *mpWriting;
  const uint32_t lNum = lBatch.wholeNum(), lSize = lBatch.wholeSize();
  mMutex.unlock();
  FileSeries::Content lGone;
  const int lError = write(&lGone);
  mMutex.lock();
  loseLocked(lGone);
  mFiles.grow(lBatch.wholeSize() - lSize, lBatch.wholeNum() - lNum);
  mCounts.mRecorded += lBatch.wholeNum() - lNum;
  mCounts.mBytes += lBatch.wholeSize() - lSize;
  mCounts.mError = lError;
  if (lError != 0) ++mFailures;
  mChanged.broadcast();
  if (mSyncNs > 0 && mSyncDueNs < 0) mSyncDueNs = mWritingSinceNs + mSyncNs;
  if (mSyncDueNs >= 0 && deadlineOf(GATHER_MS) >= mSyncDueNs) syncLocked();
}

/// Into another file first, where it is time. One that cannot be made is only missed when the present one has gone.
/// @param npGone what is lost with a file that somebody has removed
int BinaryLogFile::write(FileSeries::Content* npGone) {
  const bool lIsGone = mFiles.isGone();
  if (lIsGone) mpWriting->beginRecord();
  if (lIsGone || (!mpWriting->isWithinRecord() && mFiles.isOver(mpWriting->nextSize()))) {
    if (mSyncNs > 0) mFiles.sync();
    const FileSeries::Content lBefore = mFiles.content();
    const int lError = mFiles.turn();
    if (lError != 0 && lIsGone) return lError;
    if (lIsGone) *npGone = lBefore;
  }
  return mpWriting->writeTo(mFiles.get(), mFiles.room());
}

void BinaryLogFile::loseLocked(const FileSeries::Content& nContent) {
  mCounts.mRecorded -= nContent.mNum;
  mCounts.mBytes -= nContent.mSize;
  mCounts.mFailed += nContent.mNum;
}

void BinaryLogFile::syncLocked() {
  mSyncDueNs = -1;
  mMutex.unlock();
  mFiles.sync();
  mMutex.lock();
}

void BinaryLogFile::begin() {
  utl::MutexLock lLock(mMutex);
  mState = WRITING;
  mWork.signal();
}

void BinaryLogFile::hurryLocked() {
  mIsHurried = true;
  mWork.signal();
}

bool BinaryLogFile::append(const void* npData, unsigned int nSize) {
  utl::MutexLock lLock(mMutex);
  const bool lWasHalfFull = mpFilling->isHalfFull();
  if (mIsFinishing || !mpFilling->add(npData, nSize)) {
    ++mCounts.mRefused;
    return false;
  }
  ++mTaken;
  if (mpFilling->num() == 1) {
    if (mSyncNs > 0) mFillingSinceNs = utl::Clock::realNs();
    mWork.signal();
  }
  if (!lWasHalfFull && mpFilling->isHalfFull()) hurryLocked();
  return true;
}

bool BinaryLogFile::flush(unsigned int nTimeoutMs) {
  const int64_t lDeadline = deadlineOf(nTimeoutMs);
  utl::MutexLock lLock(mMutex);
  const unsigned long long lTaken = mTaken, lFailures = mFailures;
  hurryLocked();
  while (doneLocked() < lTaken && mFailures == lFailures && mChanged.wait(mMutex, lDeadline)) {
  }
  return doneLocked() >= lTaken;
}

BinaryLogCounts BinaryLogFile::countsLocked() const {
  BinaryLogCounts lCounts = mCounts;
  lCounts.mWaiting = mTaken - doneLocked();
  return lCounts;
}

BinaryLogCounts BinaryLogFile::counts() {
  utl::MutexLock lLock(mMutex);
  return countsLocked();
}

BinaryLogCounts BinaryLogFile::finish(unsigned int nTimeoutMs) {
  const int64_t lDeadline = deadlineOf(nTimeoutMs);
  utl::MutexLock lLock(mMutex);
  mIsFinishing = true;
  mLastFailure = mFailures + 1;
  mWork.signal();
  while (mState != ENDED && mChanged.wait(mMutex, lDeadline)) {
  }
  mIsGivenUp = true;
  BinaryLogCounts lCounts = countsLocked();
  const unsigned long long lGivenUp = std::exchange(lCounts.mWaiting, 0);
  lCounts.mFailed += lGivenUp;
  if (lGivenUp != 0 && lCounts.mError == 0) lCounts.mError = ETIMEDOUT;
  return lCounts;
}

void BinaryLogFile::release(BinaryLogFile* npFile) {
  const pthread_t lThread = npFile->mThread;
  {
    utl::MutexLock lLock(npFile->mMutex);
    npFile->mIsLeftBehind = npFile->mState != ENDED;
    if (npFile->mIsLeftBehind) {
      npFile->mWork.signal();  // it may not have anything to write, and wait for that
      pthread_detach(lThread);
      return;
    }
  }
  pthread_join(lThread, nullptr);
  delete npFile;
}

}  // namespace syslogservice
