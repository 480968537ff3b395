// Listeners and players of both logs that note their calls and do what a test tells them to.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "NfwLogPlayListener.h"
#include "NfwLogPlaySwitch.h"
#include "NfwLogRecordEventListener.h"
#include "NfwSysLogPlayListener.h"
#include "NfwSysLogPlaySwitch.h"
#include "Notes.h"
#include "PlatformSeams.h"
#include "SharedThread.h"
#include "utl/Time.h"

namespace nfwtest {

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

/// Plays either log. Notes "name start", "name stop", "name end reason", "name seek"; without a name the rest alone.
class Player : public nfw::LogPlaySwitch, public nfw::SysLogPlaySwitch {
 public:
  explicit Player(Notes& nNotes, const std::string& nName = "")
      : mNotes(nNotes), mName(nName.empty() ? "" : nName + " ") {}

  std::function<void()> mOnStart = [] {}, mOnStop = [] {}, mOnEnd = [] {};

 private:
  void startLogPlay() override { mNotes.add(mName + "start"), mOnStart(); }
  void stopLogPlay() override { mNotes.add(mName + "stop"), mOnStop(); }
  void receiveLogPlayEnd(int nReason) override { mNotes.add(mName + "end " + std::to_string(nReason)), mOnEnd(); }
  void seekLogPlay() override { mNotes.add(mName + "seek"); }
  void startSysLogPlay() override { startLogPlay(); }
  void stopSysLogPlay() override { stopLogPlay(); }
  void receiveSysLogPlayEnd() override { receiveLogPlayEnd(END_FINISHED); }
  void seekSysLogPlay() override { seekLogPlay(); }

  Notes& mNotes;
  const std::string mName;
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
