#pragma once

#include <list>
#include <memory>
#include <thread>

#include "Road.h"

namespace drive {

/// All ways out for sentences, on a thread of their own. Who hands a sentence over never waits for a reader.
class Roads {
 public:
  using Clock = Road::Clock;

  explicit Roads(const std::vector<ServeAddress>& nAddresses, const RoadLimits& nLimits = {});
  ~Roads();
  Roads(const Roads&) = delete;
  Roads& operator=(const Roads&) = delete;

  /// Opens all of them. @param npReason of false: the name and what is the matter
  bool open(std::string* npReason);
  /// False where the system gives no thread or no memory.
  bool start();

  bool isEmpty() const { return mRoads.empty(); }
  void send(std::string_view nSentence);  ///< any thread
  /// Hands out what is left, for as long as anybody takes any of it within the patience, and closes everything.
  void finish(std::chrono::milliseconds nPatience);

  /// Behind finish().
  uint64_t getSentences() const { return mSentences; }
  const std::list<std::unique_ptr<Road>>& get() const { return mRoads; }

 private:
  void run();
  void serveOnce();
  bool isDone() const;

  static constexpr int TICK_MS = 250;
  SentenceRing mRing;
  std::list<std::unique_ptr<Road>> mRoads;
  std::atomic<uint64_t> mSentences{0};
  std::atomic<bool> mIsEnding{false};
  std::chrono::milliseconds mPatience{};  // before mIsEnding
  int mWakeFd;
  std::vector<pollfd> mFds;
  std::thread mThread;
};

}  // namespace drive
