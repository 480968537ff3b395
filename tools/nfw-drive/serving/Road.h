#pragma once

#include <poll.h>

#include <chrono>
#include <vector>

#include "Descriptor.h"
#include "SentenceRing.h"
#include "ServeAddress.h"

namespace drive {

/// How much is waited for readers, who never hold up anybody.
struct RoadLimits {
  size_t mRoom = 4 * 1024 * 1024;           ///< bytes that one may be behind
  std::chrono::milliseconds mStall{10000};  ///< for so long one may take nothing of what waits for it
};

/// What became of what was handed out. By the road's thread; whole when that has ended, but for the first.
struct RoadCounts {
  std::atomic<uint64_t> mClients{0};  ///< that have come
  uint64_t mDropped = 0;              ///< because they did not read
  uint64_t mLost = 0;                 ///< sentences that the system did not take, or the reader of a line

  std::string getLoss() const;  ///< for people; empty when there is none
};

/// A way out for sentences, on one thread: that of Roads.
class Road {
 public:
  using Clock = std::chrono::steady_clock;

  Road(const ServeAddress& nAddress, const SentenceRing& nRing, const RoadLimits& nLimits)
      : mName(nAddress.mName), mAddress(nAddress), mRing(nRing), mLimits(nLimits) {}
  virtual ~Road() = default;
  Road(const Road&) = delete;
  Road& operator=(const Road&) = delete;

  /// @param npReason of false: one phrase without the name
  virtual bool open(std::string* npReason) = 0;
  /// Appends what it waits for.
  virtual void collect(std::vector<pollfd>* npFds) const = 0;
  /// Does what can be done without waiting. @param npFds what collect() appended, as poll(2) left it; @return behind it
  virtual const pollfd* serve(const pollfd* npFds) = 0;
  /// Whether everything is on its way to whoever is there.
  virtual bool isDone() const = 0;
  /// Also more than once.
  virtual void close() { mFd.reset(); }

  const std::string& getName() const { return mName; }  ///< with the port that the system chose
  const RoadCounts& getCounts() const { return mCounts; }

 protected:
  std::string mName;
  const ServeAddress mAddress;
  const SentenceRing& mRing;
  const RoadLimits mLimits;
  RoadCounts mCounts;
  tool::Descriptor mFd;
};

}  // namespace drive
