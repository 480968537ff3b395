// A running shared thread for tests.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "utl/MsgDrivenSharedThread.h"

namespace nfwtest {

/// Asks again and again for what another thread brings about and has no event. False when it does not within a minute:
/// a busy machine may take long.
inline bool eventually(const std::function<bool()>& nHolds,
                       const std::function<void()>& nBetween = std::this_thread::yield) {
  const auto lEnd = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  for (; !nHolds(); nBetween()) {
    if (std::chrono::steady_clock::now() > lEnd) return false;
  }
  return true;
}

/// Runs from construction to destruction.
class SharedThread : private utl::ThreadMsgListener {
 public:
  explicit SharedThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum = 64)
      : mThread(nMaxMsgDataSize, nMaxMsgNum, 0, "nfw::Test_SharedThread", 0) {
    start();
  }
  ~SharedThread() override { stop(); }

  void start() { EXPECT_EQ(0, mThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0)); }
  void stop() {
    if (!mThread.isRunning()) return;
    EXPECT_EQ(0, mThread.stop(1, 30000));
  }
  /// Returns when everything posted before has been handled.
  void settle() { EXPECT_TRUE(mThread.sendMsgSync(this, 1)); }

  utl::MsgDrivenSharedThread* get() { return &mThread; }
  utl::MsgDrivenSharedThread* operator->() { return &mThread; }

 private:
  void receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& /*nMsg*/) override {}

  utl::MsgDrivenSharedThread mThread;
};

/// A message as it is while it is handled, with an id, without, or with data that does not belong to the id.
class RawMsg : public utl::ThreadRawMsg {
 public:
  RawMsg() = default;
  explicit RawMsg(int nMsgId) : mHasId(true), mMsgId(nMsgId) {}

  bool getMsgId(int* npMsgId) const override {
    if (mHasId) *npMsgId = mMsgId;
    return mHasId;
  }
  bool beginInput() override { return false; }
  bool beginOutput() override { return true; }

 protected:
  bool put(ItemKind, const void*, unsigned int) override { return false; }
  bool take(ItemKind, void*, unsigned int) override { return false; }

 private:
  bool mHasId = false;
  int mMsgId = 0;
};

}  // namespace nfwtest
