#include "OutputQueue.h"

#include <pthread.h>

#include <algorithm>
#include <cstring>
#include <new>

#include "StartThread.h"

namespace drive {

namespace {

uint64_t linesIn(std::string_view nText) { return static_cast<uint64_t>(std::count(nText.begin(), nText.end(), '\n')); }

}  // namespace

OutputQueue::~OutputQueue() {
  if (!mThread.joinable()) return;
  finish(Clock::duration::zero());
  if (mThread.joinable()) mThread.join();
}

bool OutputQueue::start() {
  mpBytes.reset(new (std::nothrow) char[mRoom]);
  return mpBytes != nullptr && tool::startThread(&mThread, [this] { run(); });
}

bool OutputQueue::write(std::string_view nLines) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  if (mState != tool::Output::OPEN) return true;
  if (mpBytes == nullptr || mIsEnding || nLines.size() > mRoom - mSize) {
    mLost += linesIn(nLines);
    return false;
  }
  const size_t lAt = (mStart + mSize) % mRoom;
  const size_t lFirst = std::min(nLines.size(), mRoom - lAt);
  std::memcpy(mpBytes.get() + lAt, nLines.data(), lFirst);
  std::memcpy(mpBytes.get(), nLines.data() + lFirst, nLines.size() - lFirst);
  mSize += nLines.size();
  if (isDue()) mWork.notify_one();
  return true;
}

void OutputQueue::flush() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsFlushed = true;
  mWork.notify_one();
}

void OutputQueue::awaitRoom() {
  std::unique_lock<std::mutex> lLock(mMutex);
  if (mSize > mRoom / 2) mIsFlushed = true;
  if (mIsFlushed) mWork.notify_one();
  mProgress.wait(lLock, [this] { return mSize <= mRoom / 2 || mIsLetGo || mIsOver; });
}

void OutputQueue::letGo() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsLetGo = true;
  mProgress.notify_all();
}

bool OutputQueue::isEmpty() const {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return mSize == 0;
}

bool OutputQueue::drain(Clock::duration nPatience) {
  std::unique_lock<std::mutex> lLock(mMutex);
  mIsFlushed = true;
  mWork.notify_one();
  while (mSize > 0 && !mIsOver) {
    const uint64_t lWritten = mWritten;
    if (!mProgress.wait_for(lLock, nPatience, [&] { return mWritten != lWritten || mIsOver; })) return false;
  }
  return true;
}

// What a write that hangs has taken already is not known: its lines count as lost.
bool OutputQueue::finish(Clock::duration nPatience) {
  if (!mThread.joinable()) return true;
  const bool lIsDrained = drain(nPatience);
  {
    const std::lock_guard<std::mutex> lLock(mMutex);
    mIsEnding = true;
    mWork.notify_one();
    const size_t lFirst = std::min(mSize, mRoom - mStart);
    mLost += linesIn({mpBytes.get() + mStart, lFirst}) + linesIn({mpBytes.get(), mSize - lFirst});
  }
  if (lIsDrained) mThread.join();
  return lIsDrained;
}

void OutputQueue::run() {
  ::pthread_setname_np(::pthread_self(), "drive_Output");
  for (std::string_view lPiece = awaitPiece(); !lPiece.empty(); lPiece = awaitPiece()) {
    mOutput.write(lPiece);
    mOutput.flush();
    mError = mOutput.getError();
    mState = mOutput.getState();
    release(lPiece.size());
  }
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsOver = true;
  mProgress.notify_all();
}

// Its bytes stay where they are until they are released.
std::string_view OutputQueue::awaitPiece() {
  std::unique_lock<std::mutex> lLock(mMutex);
  if (mSize == 0) mIsFlushed = false;
  mWork.wait(lLock, [this] { return isDue() || mIsEnding; });
  return mIsEnding ? std::string_view() : topPiece();
}

std::string_view OutputQueue::topPiece() const {
  return {mpBytes.get() + mStart, std::min({mSize, PIECE_SIZE, mRoom - mStart})};
}

// Nobody reads on after a failure: the rest goes, too.
void OutputQueue::release(size_t nSize) {
  const std::lock_guard<std::mutex> lLock(mMutex);
  const size_t lSize = mState == tool::Output::OPEN ? nSize : mSize;
  mStart = (mStart + lSize) % mRoom;
  mSize -= lSize;
  mWritten += lSize;
  mProgress.notify_all();
}

}  // namespace drive
