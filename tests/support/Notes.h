// What was called, from whatever thread.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace nfwtest {

/// Notes in the order of their coming, from any thread.
class Notes {
 public:
  void add(const std::string& nNote) {
    std::lock_guard<std::mutex> lLock(mMutex);
    mNotes.push_back(nNote);
    mAdded.notify_all();
  }
  std::vector<std::string> all() const {
    std::lock_guard<std::mutex> lLock(mMutex);
    return mNotes;
  }
  size_t count() const { return all().size(); }
  /// False when there are not so many within the limit: a busy machine may take long.
  bool waitFor(size_t nCount, std::chrono::milliseconds nLimit = std::chrono::minutes(1)) const {
    std::unique_lock<std::mutex> lLock(mMutex);
    return mAdded.wait_for(lLock, nLimit, [&] { return mNotes.size() >= nCount; });
  }
  std::vector<std::string> take() {
    std::lock_guard<std::mutex> lLock(mMutex);
    return std::exchange(mNotes, {});
  }
  void clear() { take(); }

 private:
  mutable std::mutex mMutex;
  mutable std::condition_variable mAdded;
  std::vector<std::string> mNotes;
};

}  // namespace nfwtest
