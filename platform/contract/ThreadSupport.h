// Threads under test: a listener that notes what it gets, and both thread classes behind the same verbs.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "SharedThread.h"
#include "utl/Event.h"
#include "utl/MsgDrivenSharedThread.h"
#include "utl/MsgDrivenThread.h"

namespace contract {

const unsigned int LIMIT_MS = 20000;  // of waits that are not expected to end this way

using nfwtest::eventually;

/// `nSize` bytes, of which the first ones are a number.
class BytesMsg : public utl::Msg {
 public:
  BytesMsg(int nId, unsigned int nSize, unsigned int nValue = 0) : Msg(nId), mBytes(nSize) {
    for (unsigned int i = 0; i < nSize; ++i) mBytes[i] = static_cast<unsigned char>(nValue + i);
  }
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override {
    return nBroker.writeBytes(mBytes.data(), static_cast<unsigned int>(mBytes.size()));
  }
  bool restoreDataFrom(utl::MsgDataBroker& nBroker) override {
    return nBroker.readBytes(mBytes.data(), static_cast<unsigned int>(mBytes.size()));
  }
  bool isWhole() const {
    for (size_t i = 1; i < mBytes.size(); ++i) {
      if (mBytes[i] != static_cast<unsigned char>(mBytes[0] + i)) return false;
    }
    return true;
  }
  std::vector<unsigned char> mBytes;
};

/// A message that stores what the rule does.
class StoreBy : public utl::Msg {
 public:
  StoreBy(int nId, std::function<bool(utl::MsgDataBroker&)> nRule) : Msg(nId), mRule(std::move(nRule)) {}
  bool storeDataTo(utl::MsgDataBroker& nBroker) const override { return mRule(nBroker); }

 private:
  std::function<bool(utl::MsgDataBroker&)> mRule;
};

/// Notes the ids of its messages and the parameters of its timers. The message HOLD keeps its thread until release().
class Recorder : public utl::ThreadMsgListener {
 public:
  static constexpr int HOLD = -1;
  static constexpr int TIMER = 1000000;  // noted for a timer, plus its parameter

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override {
    int lId = 0;
    EXPECT_TRUE(nMsg.getMsgId(&lId));
    EXPECT_EQ(nThreadId, utl::Thread::getCurrentId());
    if (mOnMsg) mOnMsg(lId, nMsg);
    if (lId == HOLD) {
      mIsHeld.on();
      mRelease.waitToOn(0);
      return;
    }
    utl::TimerMsg lTimer;
    if (lId == utl::TimerMsg::MSG_ID) {
      EXPECT_TRUE(lTimer.restoreFrom(nMsg));
      lId = TIMER + static_cast<int>(lTimer.getParam());
    }
    std::lock_guard<std::mutex> lLock(mMutex);
    mIds.push_back(lId);
    mChanged.notify_all();
  }

  bool awaitHeld() { return mIsHeld.waitToOn(LIMIT_MS); }
  void release() { mRelease.on(); }
  bool await(size_t nNum) {
    std::unique_lock<std::mutex> lLock(mMutex);
    return mChanged.wait_for(lLock, std::chrono::milliseconds(LIMIT_MS), [&] { return mIds.size() >= nNum; });
  }
  std::vector<int> ids() {
    std::lock_guard<std::mutex> lLock(mMutex);
    return mIds;
  }

  std::function<void(int, utl::ThreadRawMsg&)> mOnMsg;  // set while the thread is idle

 private:
  utl::Event mIsHeld{false}, mRelease{false};
  std::mutex mMutex;
  std::condition_variable mChanged;
  std::vector<int> mIds;
};

using Judgement = utl::MsgDrivenThread::MsgJudgement;

class JudgeBy : public Judgement {
 public:
  explicit JudgeBy(std::function<bool(int, utl::ThreadRawMsg&)> nRule) : mRule(std::move(nRule)) {}
  bool judge(utl::ThreadRawMsg& nMsg) override {
    int lId = 0;
    return nMsg.getMsgId(&lId) && mRule(lId, nMsg);
  }

 private:
  std::function<bool(int, utl::ThreadRawMsg&)> mRule;
};

/// Starts with a listener, and the time to wait for it.
inline int start(utl::MsgDrivenThread& nThread, utl::ThreadMsgListener* npListener, unsigned int nMs = LIMIT_MS) {
  return nThread.start(npListener, 1, nMs, nullptr, 1, 0, utl::ThreadPriority(3), 0);
}
inline int start(utl::MsgDrivenSharedThread& nThread) {
  return nThread.start(1, LIMIT_MS, nullptr, 1, 0, utl::ThreadPriority(3), 0);
}

struct Sizes {
  unsigned int mData = 64, mNum = 256, mTimers = 4;
};

/// Both classes by the same verbs: of a thread with one listener, and of a shared thread used by one, which is told
/// with each call (`Self` is a pointer to it).
template <class Thread, class... Self>
struct UnderTest {
  explicit UnderTest(const Sizes& n = {})
      : mThread(n.mData, n.mNum, none<Self>()..., "nfw::Contract_Thread", n.mTimers) {}
  int start() {
    if constexpr (sizeof...(Self) > 0) {
      return contract::start(mThread);
    } else {
      return contract::start(mThread, &mRecorder);
    }
  }
  template <class M>
  bool post(const M& nMsg) {
    return mThread.postMsg(self<Self>()..., nMsg);
  }
  bool hold() { return post(Recorder::HOLD) && mRecorder.awaitHeld(); }
  template <class M>
  bool send(const M& nMsg) {
    return mThread.sendMsgSync(self<Self>()..., nMsg);
  }
  template <class M>
  bool interrupt(const M& nMsg) {
    return mThread.sendMsgInterrupt(self<Self>()..., nMsg);
  }
  int timer(unsigned int nMs, int nCount, unsigned int n) { return mThread.setTimer(self<Self>()..., nMs, nCount, n); }
  bool has(int nId) { return mThread.hasMsg(self<Self>()..., nId); }
  unsigned int erase(int nId) { return mThread.eraseMsg(self<Self>()..., nId); }
  unsigned int erase(Judgement* np) { return mThread.eraseMsgInternal(self<Self>()..., np); }

  template <class S>
  S self() {
    return &mRecorder;
  }
  template <class S>
  static unsigned int none() {
    return 0;
  }
  Recorder mRecorder;
  Thread mThread;
};

using OwnThread = UnderTest<utl::MsgDrivenThread>;
using SharedThread = UnderTest<utl::MsgDrivenSharedThread, Recorder*>;

}  // namespace contract
