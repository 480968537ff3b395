// The scenarios, and what they share.
#pragma once

#include <array>
#include <functional>
#include <initializer_list>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "LogRecords.h"
#include "Schedule.h"

void components();
void controls();
void facades();
void gate();
void listeners();
void logger();
void mounts();
void playback();
void services();
void settings();

/// Threads of a scenario, waited for on the way out.
class Crew {
 public:
  ~Crew() { join(); }
  void add(const std::function<void()>& nWork, int nNum = 1) {
    for (int i = 0; i < nNum; ++i) mThreads.emplace_back(nWork);
  }
  void join() {
    for (std::thread& lEach : mThreads) lEach.join();
    mThreads.clear();
  }

 private:
  std::vector<std::thread> mThreads;
};

/// Where a listener stands. One thread at a time changes it; who comes meanwhile leaves it alone.
class Place {
 public:
  void attach(const std::function<bool()>& nAttach) {
    const std::unique_lock<std::mutex> lTurn(mTurn, std::try_to_lock);
    if (!lTurn || mState != ABSENT) return;
    mState = COMING;
    mState = nAttach() ? PRESENT : ABSENT;
  }
  /// From inside a play listener it takes effect behind the call only.
  void detach(const std::function<void()>& nDetach, bool nIsDone = true) {
    const std::unique_lock<std::mutex> lTurn(mTurn, std::try_to_lock);
    if (!lTurn || mState != PRESENT) return;
    mState = LEAVING;
    nDetach();
    mState = nIsDone ? ABSENT : LEFT_BEHIND;
  }
  void called(const char* npListener) const {
    schedule::outward(npListener);
    schedule::require(mState != ABSENT, std::string(npListener) + " is not called after its detach returned");
  }
  void forget() { mState = ABSENT; }  ///< the service has gone
  bool isPresent() const { return mState == PRESENT; }

 private:
  enum State { ABSENT, COMING, PRESENT, LEAVING, LEFT_BEHIND };
  volatile State mState = ABSENT;
  std::mutex mTurn;
};

/// While they are fed, two threads and, now and then, whoever of them is called let one of them come or go.
template <class Hearer, size_t Num>
void changeUnder(std::initializer_list<std::function<void()>> nFeeders, std::array<Hearer, Num>& nHearers, int nTimes) {
  const auto lChange = [&nHearers] {
    Hearer& lHearer = nHearers[schedule::pick(Num)];
    schedule::flip() ? lHearer.come() : lHearer.go();
  };
  for (Hearer& lEach : nHearers) {
    lEach.mOnCall = [lChange] {
      if (schedule::pick(4) == 0) lChange();
    };
  }
  const auto lWork = [&] {
    for (int i = 0; i < nTimes; ++i) lChange();
  };
  Crew lCrew;
  for (const auto& lEach : nFeeders) lCrew.add(lEach);
  lCrew.add(lWork, 2);
}

/// Numbers that have to come in order, one after the other from the first on.
class Ascending {
 public:
  explicit Ascending(const char* npWhat) : mpWhat(npWhat) {}
  void see(int nNumber) {
    schedule::require(nNumber > mLast, std::string(mpWhat) + " in order");
    mLast = nNumber;
  }
  void begin() { mLast = -1; }
  int last() const { return mLast; }

 private:
  const char* const mpWhat;
  int mLast = -1;
};

void sizeLogs(unsigned int nBuffer, unsigned int nFile, unsigned int nField = 100);
void startLogs();  ///< both log services
void endLogs();
void writeFile(const std::string& nPath, const std::string& nBytes);
