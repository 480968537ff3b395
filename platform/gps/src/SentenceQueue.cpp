#include "SentenceQueue.h"

#include <cstring>

namespace gpshost {

void SentenceQueue::open() {
  std::lock_guard<std::mutex> lLock(mMutex);
  mIsOpen = true;
}

void SentenceQueue::close() {
  std::lock_guard<std::mutex> lLock(mMutex);
  mIsOpen = false;
  mHasSentence.notify_all();
  mHasRoom.notify_all();
}

// Who found it full waits until half of it is free, and so does who comes behind: else both threads would be woken for
// each sentence.
bool SentenceQueue::put(const char* npText, unsigned int nSize) {
  std::unique_lock<std::mutex> lLock(mMutex);
  if (mCount == SIZE || mWaiting > 0) {
    ++mWaiting;
    mHasRoom.wait(lLock, [this] { return mCount <= SIZE / 2 || !mIsOpen; });
    --mWaiting;
  }
  if (!mIsOpen) return false;
  Sentence& lSentence = mSentences[(mFront + mCount) % SIZE];
  memcpy(lSentence.mText, npText, nSize);
  lSentence.mText[nSize] = '\0';
  lSentence.mSize = nSize;
  ++mCount;
  mHasSentence.notify_one();
  return true;
}

void SentenceQueue::drain() {
  std::unique_lock<std::mutex> lLock(mMutex);
  mIsEmpty.wait(lLock, [this] { return mCount == 0; });
}

const SentenceQueue::Sentence* SentenceQueue::front() {
  std::unique_lock<std::mutex> lLock(mMutex);
  mHasSentence.wait(lLock, [this] { return mCount > 0 || !mIsOpen; });
  return mCount > 0 ? &mSentences[mFront] : nullptr;
}

void SentenceQueue::pop() {
  std::lock_guard<std::mutex> lLock(mMutex);
  mFront = (mFront + 1) % SIZE;
  --mCount;
  if (mCount == SIZE / 2) mHasRoom.notify_all();
  if (mCount == 0) mIsEmpty.notify_all();
}

}  // namespace gpshost
