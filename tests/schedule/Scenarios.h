// The scenarios, and what they share.
#pragma once

#include <array>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

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
  void add(std::function<void()> nWork) { mThreads.emplace_back(std::move(nWork)); }
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

/// One of them comes or goes at each call, and, now and then, whenever one of them is called itself.
template <class Hearer, size_t Num>
std::function<void()> changing(std::array<Hearer, Num>& nHearers) {
  const auto lChange = [&nHearers] {
    Hearer& lHearer = nHearers[schedule::pick(Num)];
    schedule::flip() ? lHearer.come() : lHearer.go();
  };
  for (Hearer& lEach : nHearers) {
    lEach.mOnCall = [lChange] {
      if (schedule::pick(4) == 0) lChange();
    };
  }
  return lChange;
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

inline std::string record(int nId, unsigned int nTimeMs, const std::string& nData) {
  std::string lRecord = "2026/05/06 07:08:09.010 ID00000000: ";
  for (const uint32_t lField :
       {static_cast<uint32_t>(nId), static_cast<uint32_t>(nTimeMs), static_cast<uint32_t>(nData.size())}) {
    for (int i = 0; i < 32; i += 8) lRecord += static_cast<char>(lField >> i);
  }
  return lRecord + nData + '\n';
}

inline std::string sensorRecord(int nId, unsigned int nTimeMs, const std::string& nData) {
  std::string lRecord(1, static_cast<char>(nId | 1 << 4));
  for (int i = 0; i < 32; i += 8) lRecord += static_cast<char>(nTimeMs >> i);
  return lRecord + static_cast<char>(nData.size() & 0xFF) + static_cast<char>(nData.size() >> 8) + nData;
}

void startLogs();  ///< both log services
void endLogs();
std::string readFile(const std::string& nPath);
void writeFile(const std::string& nPath, const std::string& nBytes);
