// What steps 3 to 5 of docs/guide.md share: the component that runs the services, and one that listens to positions.
#pragma once

#include <atomic>
#include <cstdio>

#include "guide.h"

/// Starts the services of positions, recording and replay, and stops them. Added before those that use them.
class Services : public nfw::Component {
 public:
  Services() : nfw::Component("Services") {}

 private:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override {  // both logs first: positions are recorded and replayed through them
    const bool lIsReady = nfw::Logger::get()->initialize() && nfw::SensorSysLoggerManager::get()->initialize() &&
                          nfw::Gnss::get()->initialize();
    return lIsReady ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
  }
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override {
    nfw::Gnss::get()->shutdown();  // what is under way is delivered and recorded first
    return nfw::PHASE_DONE;
  }
  int finalizeImp() override {
    nfw::SensorSysLoggerManager::get()->shutdown();
    nfw::Logger::get()->shutdown();
    return nfw::PHASE_DONE;
  }
};

/// Prints each position and counts the sentences.
class Positions : public nfw::Component, private nfw::ParsedGgaDataListener, private nfw::NmeaDataListener {
 public:
  explicit Positions(const char* npName = "Positions") : nfw::Component(npName) {}

 protected:
  int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
  int initializeAfterQuickBootImp() override {  // any time after Gnss::initialize()
    const bool lIsAttached =
        nfw::Gnss::get()->attachParsedGgaDataListener(this) && nfw::Gnss::get()->attachNmeaDataListener(this);
    return lIsAttached ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
  }
  int startImp() override { return nfw::PHASE_DONE; }
  int stopImp() override { return nfw::PHASE_DONE; }
  int shutdownImp() override { return nfw::PHASE_DONE; }
  unsigned int sentenceCount() const { return mSentenceCount; }

  // The listener's calls come on the thread of Gnss. They do not block: everything behind them would wait.
  void onNotifyParsedGgaData(const nfw::GgaSentence& nFix) override {
    std::printf("%02u:%02u:%02u  %2d deg %07.4f'  %3d deg %07.4f'\n", nFix.utcTime.hour, nFix.utcTime.minute,
                nFix.utcTime.second, nFix.latitude.degree, nFix.latitude.minute, nFix.longitude.degree,
                nFix.longitude.minute);
  }
  void onNotifyNmeaData(unsigned char const* /*npData*/, unsigned int /*nSize*/) override { ++mSentenceCount; }

 private:
  std::atomic<unsigned int> mSentenceCount{0};
};
