// Sentences on their way from the line to the receiver's thread.
#pragma once

#include <condition_variable>
#include <mutex>

#include "GpsHost.h"

namespace gpshost {

/// A ring of fixed places between any number of producers and one consumer. A sentence keeps its place until the
/// consumer has done with it, so an empty queue means that all was handed on.
class SentenceQueue {
 public:
  struct Sentence {
    unsigned int mSize;
    char mText[Receiver::MAX_SENTENCE + 1];  // terminated
  };

  void open();
  void close();  ///< put() refuses from now on; what is inside is still taken out

  bool put(const char* npText, unsigned int nSize);  ///< waits for a place; false when closed
  void drain();                                      ///< waits until it is empty

  const Sentence* front();  ///< of the consumer: waits for a sentence; null when closed and empty
  void pop();               ///< of the consumer: has done with the front

 private:
  static constexpr unsigned int SIZE = Receiver::QUEUE_SIZE;

  std::mutex mMutex;  // guards what follows; the consumer reads the front without it
  std::condition_variable mHasSentence, mHasRoom, mIsEmpty;
  Sentence mSentences[SIZE];
  unsigned int mFront = 0;
  unsigned int mCount = 0;
  unsigned int mWaiting = 0;  // producers
  bool mIsOpen = false;
};

}  // namespace gpshost
