#pragma once

#include <thread>

#include "Failure.h"
#include "LineReader.h"
#include "RateLimit.h"
#include "SourceReader.h"
#include "SourceTurn.h"

namespace drive {

/// One source: reads it on a thread of its own, to its end.
class SourceFeed : private SourceReader::Listener {
 public:
  /// Told on that thread.
  class Listener {
   public:
    virtual ~Listener() = default;
    virtual void onFeedOpen() = 0;  ///< each time it opens
    virtual void onFeedEnd() = 0;
  };
  /// What it works with; everything outlives it.
  struct Parts {
    const Options& mOptions;
    Progress& mProgress;
    Failure& mFailure;
    tool::Stopper& mStopper;
    Turns& mTurns;
    Listener& mListener;
  };

  SourceFeed(size_t nNumber, const Parts& nParts);
  ~SourceFeed() override { join(); }
  SourceFeed(const SourceFeed&) = delete;
  SourceFeed& operator=(const SourceFeed&) = delete;

  const MotionSensor* motion() const { return mpSource->motion(); }
  bool start(Intake& nIntake);  ///< false where the system gives no thread
  void join();

 private:
  void onSourceOpen() override;
  void onSourceTrouble(const std::string& nMessage) override;

  void run(Intake& nIntake);
  void readSource(Intake& nIntake);
  void fail(ExitCode nExit, const std::string& nReason);

  const size_t mNumber;
  const Parts mParts;
  const SourceAddress& mAddress;
  SourceProgress& mProgress;
  tool::LineReader mReader;
  const std::unique_ptr<SentenceSource> mpSource;
  std::thread mThread;
};

}  // namespace drive
