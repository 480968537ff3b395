// Listeners and players of both logs that note their calls and do what a test tells them to.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogRecordEventListener.h"
#include "NfwSysLogPlayListener.h"
#include "NfwSysLogPlayer.h"
#include "PlatformSeams.h"
#include "SharedThread.h"
#include "utl/Time.h"

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
  /// Looks at each that comes. False when the condition does not hold within the time.
  bool waitFor(const std::function<bool()>& nCondition, std::chrono::milliseconds nLimit) const {
    const auto lEnd = std::chrono::steady_clock::now() + nLimit;
    for (size_t lCount = count(); !nCondition(); lCount = count()) {
      std::unique_lock<std::mutex> lLock(mMutex);
      if (!mAdded.wait_until(lLock, lEnd, [&] { return mNotes.size() > lCount; })) return false;
    }
    return true;
  }
  void clear() {
    std::lock_guard<std::mutex> lLock(mMutex);
    mNotes.clear();
  }

 private:
  mutable std::mutex mMutex;
  mutable std::condition_variable mAdded;
  std::vector<std::string> mNotes;
};

/// Moves the clock by steps until the condition holds.
inline bool pump(seams::ManualClock& nClock, const std::function<bool()>& nCondition, unsigned int nStepMs = 1) {
  const auto lStep = [&] { nClock.advance(nStepMs), std::this_thread::yield(); };
  return eventually(nCondition, lStep);
}

/// Receives from both logs. Notes "tick:data".
class PlayListener : public nfw::LogPlayListener, public nfw::SysLogPlayListener {
 public:
  explicit PlayListener(Notes& nNotes) : mNotes(nNotes) {}
  void receiveLogPlayData(int /*nLogTypeId*/, const unsigned char* npData, unsigned int nSize) override {
    note(std::string(reinterpret_cast<const char*>(npData), nSize));
  }
  void receiveSysLogPlayData(int /*nLogTypeId*/, int nLogVersion, const unsigned char* npData,
                             unsigned int nSize) override {
    note("v" + std::to_string(nLogVersion) + " " + std::string(reinterpret_cast<const char*>(npData), nSize));
  }

  std::function<void()> mOnData = [] {};
  bool mHasTicks = true;

 private:
  void note(const std::string& nText) {
    mNotes.add((mHasTicks ? std::to_string(utl::TimeCounter::getTickTime()) + ":" : "") + nText);
    mOnData();
  }
  Notes& mNotes;
};

/// Notes "name start", "name stop", "name end reason".
class Player : public nfw::LogPlayer {
 public:
  Player(Notes& nNotes, const std::string& nName) : mNotes(nNotes), mName(nName) {}
  void notifyPlayStart() override { mNotes.add(mName + " start"), mOnStart(); }
  void notifyPlayStop() override { mNotes.add(mName + " stop"), mOnStop(); }
  void notifyPlayEnd(int nReason) override { mNotes.add(mName + " end " + std::to_string(nReason)), mOnEnd(); }

  std::function<void()> mOnStart = [] {}, mOnStop = [] {}, mOnEnd = [] {};

 private:
  Notes& mNotes;
  const std::string mName;
};

class SysPlayer : public nfw::SysLogPlayer {
 public:
  explicit SysPlayer(Notes& nNotes) : mNotes(nNotes) {}
  void notifyPlayStart() override { mNotes.add("start"), mOnStart(); }
  void notifyPlayStop() override { mNotes.add("stop"); }
  void notifyPlayEnd() override { mNotes.add("end"); }

  std::function<void()> mOnStart = [] {};

 private:
  Notes& mNotes;
};

class RecordListener : public nfw::LogRecordEventListener {
 public:
  RecordListener(Notes& nNotes, const std::string& nName) : mNotes(nNotes), mName(nName) {}
  void notifyRecordStart() override { mNotes.add(mName + " start"), mOnStart(); }
  void notifyRecordStop() override { mNotes.add(mName + " stop"); }

  std::function<void()> mOnStart = [] {};

 private:
  Notes& mNotes;
  const std::string mName;
};

}  // namespace nfwtest
