#pragma once

#include <string>

#include "LineReader.h"
#include "PacedSink.h"
#include "SentenceSource.h"

namespace drive {

/// Reads a source to its end on the calling thread: opens it, cuts its bytes into sentences, plays them at their pace,
/// and opens a live source again when it breaks, after 1, 2, 4 ... at most 30 seconds.
class SourceReader {
 public:
  /// Told on the reading thread.
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void onSourceOpen() = 0;                                ///< each time it opens
    virtual void onSourceTrouble(const std::string& nMessage) = 0;  ///< it goes on nevertheless
  };
  enum Result { ENDED, UNREADABLE };

  SourceReader(const SourceAddress& nAddress, SentenceSource& nSource, tool::LineReader& nReader,
               tool::Stopper& nStopper, Listener& nListener)
      : mSpec(nAddress), mSource(nSource), mReader(nReader), mStopper(nStopper), mListener(nListener) {}

  /// @param npReason of UNREADABLE: the source's name and what is the matter
  Result run(tool::SentenceSink& nSink, std::string* npReason);

 private:
  enum Outcome { OVER, AGAIN, FAILED };

  Outcome playOnce(tool::SentenceSink& nSink, std::string* npReason);
  Outcome readAll(tool::SentenceSink& nSink, std::string* npReason);
  bool waitForIt(const std::string& nReason);
  bool waitToRetry(const std::string& nReason);

  static constexpr unsigned int MAX_RETRY_S = 30;
  const SourceAddress& mSpec;
  SentenceSource& mSource;
  tool::LineReader& mReader;
  tool::Stopper& mStopper;
  Listener& mListener;
  unsigned int mRetryS = 1;
  bool mIsAwaited = mSpec.mIsAwaited;  // and has never been there
  bool mIsTold = false;                // that it is awaited
};

}  // namespace drive
