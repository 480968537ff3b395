#pragma once

#include "Road.h"

namespace drive {

/// One reader of a stream, at its own place in the ring.
class RoadClient {
 public:
  enum Fate { HERE, GONE, TOO_SLOW };

  /// @param nFd without blocking; owned
  RoadClient(int nFd, std::string nName, const SentenceRing& nRing, const RoadLimits& nLimits);
  ~RoadClient();
  RoadClient(const RoadClient&) = delete;
  RoadClient& operator=(const RoadClient&) = delete;

  pollfd poll() const;
  Fate serve(short nEvents);
  bool isDone() const { return mAt == mRing.getEnd(); }
  const std::string& getName() const { return mName; }
  uint64_t behind() const { return mRing.getEnd() - mAt; }

 private:
  Fate send();
  void discardInput();

  const int mFd;
  const std::string mName;
  const SentenceRing& mRing;
  const RoadLimits mLimits;
  uint64_t mAt;
  Road::Clock::time_point mTaken = Road::Clock::now();  // or had nothing to take
  bool mIsMute = false;                                 // it sends no more
};

}  // namespace drive
