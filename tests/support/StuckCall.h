// A callback that does not return until a test lets it.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <future>
#include <string>
#include <thread>

namespace nfwtest {

/// One call is caught, the first one.
class StuckCall {
 public:
  /// From the callback.
  void enter() {
    if (mIsCaught.exchange(true)) return;
    mTask = std::filesystem::read_symlink("/proc/thread-self").filename();
    mEntered.set_value();
    mLeft.get_future().wait();
  }
  void awaitEntry() {
    EXPECT_EQ(std::future_status::ready, mEntered.get_future().wait_for(std::chrono::minutes(1))) << "not called";
  }
  /// Lets the callback return. False when its thread has not ended within a minute.
  bool leave() {
    mLeft.set_value();
    const auto lEnd = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (std::filesystem::exists("/proc/self/task/" + mTask)) {
      if (std::chrono::steady_clock::now() > lEnd) return false;
      std::this_thread::yield();
    }
    return true;
  }

 private:
  std::atomic<bool> mIsCaught{false};
  std::promise<void> mEntered, mLeft;
  std::string mTask;  // of the kernel
};

}  // namespace nfwtest
