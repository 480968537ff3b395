#include "BinaryLogFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
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

BinaryLogFile* BinaryLogFile::open(const char* npPath, unsigned int nTimeoutMs) {
  BinaryLogFile* const lpFile = new (std::nothrow) BinaryLogFile;
  int lError = lpFile == nullptr ? ENOMEM : lpFile->start(npPath);
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

BinaryLogFile::~BinaryLogFile() {
  if (mFile >= 0) ::close(mFile);
}

/// The thread opens the file. On an error there is no thread.
int BinaryLogFile::start(const char* npPath) {
  const size_t lLength = strnlen(npPath, sizeof(mPath));
  int lError = lLength == sizeof(mPath) ? ENAMETOOLONG : 0;
  if (lError == 0) memcpy(mPath, npPath, lLength);
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
  const int lError = openFile();
  utl::MutexLock lLock(mMutex);
  mCounts.mError = lError;
  mState = lError == 0 ? OPEN : ENDED;
  mChanged.broadcast();
  if (lError == 0) {
    while (awaitBatchLocked()) writeLocked();
    mpWriting->cutBack(mFile);  // nothing to do but for a file system that answered too late
  }
  mState = ENDED;
  mChanged.broadcast();
  return mIsLeftBehind;
}

/// A pipe without a reader is an error here, as it would be later.
int BinaryLogFile::openFile() {
  mFile = ::open(mPath, O_WRONLY | O_CREAT | O_APPEND | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, mode_t{0666});
  if (mFile < 0) return errno;
  fcntl(mFile, F_SETFL, O_APPEND);
  return 0;
}

/// Waits for records, and then for more of them. False when the thread is to end.
bool BinaryLogFile::awaitBatchLocked() {
  while (!mIsGivenUp && !mayWriteLocked()) {
    if (mState == WRITING && mIsFinishing) return false;
    mWork.wait(mMutex);
  }
  const bool lIsUnderWay = !mpWriting->isDone() && mCounts.mError == 0;
  const int64_t lDeadline = deadlineOf(GATHER_MS);
  while (!lIsUnderWay && !mIsHurried && !mIsFinishing && mWork.wait(mMutex, lDeadline)) {
  }
  if (mIsGivenUp || mFailures >= mLastFailure) return false;
  if (!mpWriting->isDone()) return true;
  mIsHurried = false;
  mpWriting->clear();
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
  const int lError = lBatch.writeTo(mFile);
  mMutex.lock();
  mCounts.mRecorded += lBatch.wholeNum() - lNum;
  mCounts.mBytes += lBatch.wholeSize() - lSize;
  mCounts.mError = lError;
  if (lError != 0) ++mFailures;
  mChanged.broadcast();
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
  if (mpFilling->num() == 1) mWork.signal();
  if (!lWasHalfFull && mpFilling->isHalfFull()) hurryLocked();
  return true;
}

bool BinaryLogFile::flush(unsigned int nTimeoutMs) {
  const int64_t lDeadline = deadlineOf(nTimeoutMs);
  utl::MutexLock lLock(mMutex);
  const unsigned long long lTaken = mTaken, lFailures = mFailures;
  hurryLocked();
  while (mCounts.mRecorded < lTaken && mFailures == lFailures && mChanged.wait(mMutex, lDeadline)) {
  }
  return mCounts.mRecorded >= lTaken;
}

BinaryLogCounts BinaryLogFile::countsLocked() const {
  BinaryLogCounts lCounts = mCounts;
  lCounts.mWaiting = mTaken - mCounts.mRecorded;
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
  std::swap(lCounts.mWaiting, lCounts.mFailed);
  if (lCounts.mFailed != 0 && lCounts.mError == 0) lCounts.mError = ETIMEDOUT;
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
