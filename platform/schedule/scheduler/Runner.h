// Runs scenarios, each seed in a process of its own.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "LockOrder.h"
#include "Schedule.h"

namespace schedule {

struct RunnerOptions {
  std::string mScenario;  // empty: all
  uint64_t mSeed = 1;
  uint64_t mCount = 2000;
  bool mIsTraced = false;   // print every step
  bool mIsChecked = false;  // run each seed twice, and compare
};

/// A process for each processor, pinned to it: who has the turn is given it without a second processor being woken.
class Runner {
 public:
  Runner(const RunnerOptions& nOptions, const LockOrder& nOrder);
  ~Runner();
  Runner(const Runner&) = delete;
  Runner& operator=(const Runner&) = delete;

  bool run(const Scenario& nScenario);  ///< false after a finding, which is printed

 private:
  struct Result {
    uint64_t mDigest, mSteps;
    int64_t mVirtualMs;
  };
  struct Slot {
    pid_t mProcess = 0;
    uint64_t mSeed = 0;
    unsigned int mRound = 0;
    uint64_t mDigest = 0;
    std::string mDirectory, mReport;
    Result* mpResult = nullptr;  // shared with the process
  };
  void begin(Slot& nSlot, const Scenario& nScenario, uint64_t nSeed);
  [[noreturn]] void beScenario(const Slot& nSlot, const Scenario& nScenario) const;
  bool awaitOne(const Scenario& nScenario);
  bool finish(Slot& nSlot, const Scenario& nScenario, int nStatus);
  bool tell(const Slot& nSlot, const Scenario& nScenario, const char* npWhat);
  void showProgress(const Scenario& nScenario) const;

  const RunnerOptions mOptions;
  const LockOrder& mOrder;
  std::vector<Slot> mSlots;
  std::string mTop;
  uint64_t mDone = 0, mSteps = 0;
  int64_t mVirtualMs = 0;
};

}  // namespace schedule
