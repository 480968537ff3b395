#include <pthread.h>

#include "GpsHost.h"
#include "GpsListeners.h"
#include "SeamState.h"
#include "SentenceQueue.h"
#include "SystemFeed.h"
#include "TokyoDatum.h"

namespace gpshost {

/// The queue, the thread behind it, and the ways to the listeners.
class Receiver::Line {
 public:
  bool start();
  void stop();

  SentenceQueue mQueue;

 private:
  static void* enter(void* npLine);
  void handOn(const SentenceQueue::Sentence& nSentence);

  std::mutex mMutex;  // of starts and stops
  pthread_t mThread{};
  bool mIsRunning = false;
  SystemFeed mWgs84{WGS_84_GPS};
  SystemFeed mTokyo{TOKYO_GPS};
  char mMoved[MAX_SENTENCE + 64];
};

bool Receiver::Line::start() {
  std::lock_guard<std::mutex> lLock(mMutex);
  if (mIsRunning || seams::fails(seams::THREAD_START)) return false;
  mQueue.open();
  mIsRunning = pthread_create(&mThread, nullptr, &Line::enter, this) == 0;
  if (!mIsRunning) mQueue.close();
  return mIsRunning;
}

void Receiver::Line::stop() {
  std::lock_guard<std::mutex> lLock(mMutex);
  if (!mIsRunning) return;
  mQueue.close();
  pthread_join(mThread, nullptr);
  mIsRunning = false;
}

void* Receiver::Line::enter(void* npLine) {
  pthread_setname_np(pthread_self(), "Gps_Receiver");
  Line& lLine = *static_cast<Line*>(npLine);
  while (const SentenceQueue::Sentence* const lpSentence = lLine.mQueue.front()) {
    lLine.handOn(*lpSentence);
    lLine.mQueue.pop();
  }
  return nullptr;
}

// Nothing is done for a system that nobody listens to, and what was under way there is forgotten.
void Receiver::Line::handOn(const SentenceQueue::Sentence& nSentence) {
  if (hasListeners(WGS_84_GPS)) {
    mWgs84.take(nSentence.mText, nSentence.mSize);
  } else {
    mWgs84.clear();
  }
  if (hasListeners(TOKYO_GPS)) {
    const unsigned int lMovedSize = moveToTokyo(nSentence.mText, mMoved);
    mTokyo.take(lMovedSize > 0 ? mMoved : nSentence.mText, lMovedSize > 0 ? lMovedSize : nSentence.mSize);
  } else {
    mTokyo.clear();
  }
}

Receiver::Receiver() : mpLine(new Line) {}
Receiver::~Receiver() { stop(); }
bool Receiver::start() { return mpLine->start(); }
void Receiver::stop() { mpLine->stop(); }
void Receiver::drain() { mpLine->mQueue.drain(); }

bool Receiver::receive(const char* npSentence, unsigned int nSize) {
  return npSentence != nullptr && nSize <= MAX_SENTENCE && mpLine->mQueue.put(npSentence, nSize);
}

}  // namespace gpshost
