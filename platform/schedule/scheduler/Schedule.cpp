#include "Schedule.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Runner.h"
#include "Scheduler.h"

namespace schedule {

namespace {

Scheduler& scheduler() { return *Scheduler::active(); }

int refuse(const char* npArgument) {
  std::fprintf(stderr, "unknown argument: %s; [SCENARIO] [--seed N] [--count N] [--trace] [--check]\n", npArgument);
  return 2;
}

bool readNumber(const char* npText, uint64_t* npNumber) {
  char* lpEnd = nullptr;
  if (npText == nullptr || *npText < '0' || *npText > '9') return false;
  *npNumber = std::strtoull(npText, &lpEnd, 10);
  return *lpEnd == '\0' && *npNumber > 0;
}

/// The argument that is wrong, or null.
const char* readArguments(char** npArgs, RunnerOptions* npOptions) {
  bool lHasCount = false, lHasSeed = false;
  for (; *npArgs != nullptr; ++npArgs) {
    const std::string lArgument = *npArgs;
    if (lArgument == "--seed" && readNumber(npArgs[1], &npOptions->mSeed)) {
      lHasSeed = true, ++npArgs;
    } else if (lArgument == "--count" && readNumber(npArgs[1], &npOptions->mCount)) {
      lHasCount = true, ++npArgs;
    } else if (lArgument == "--trace") {
      npOptions->mIsTraced = true;
    } else if (lArgument == "--check") {
      npOptions->mIsChecked = true;
    } else if (lArgument[0] != '-' && npOptions->mScenario.empty()) {
      npOptions->mScenario = lArgument;
    } else {
      return *npArgs;
    }
  }
  if (lHasSeed && !lHasCount) npOptions->mCount = 1;
  return nullptr;
}

}  // namespace

void require(bool nHolds, const char* npWords) {
  Scheduler* const lpScheduler = Scheduler::active();
  if (!nHolds && lpScheduler != nullptr) lpScheduler->fail(npWords);
}

void require(bool nHolds, const std::string& nWords) { require(nHolds, nWords.c_str()); }

void outward(const char* npCallback) {
  const char* const lpHeld = scheduler().heldName();
  if (lpHeld != nullptr) scheduler().fail(std::string(npCallback) + " is called under the lock " + lpHeld);
}

unsigned int pick(unsigned int nNum) { return scheduler().strategy().random().below(nNum); }

int64_t nowMs() { return (scheduler().nowNs() - Scheduler::BEGIN_NS) / NS_PER_MS; }

void sleepMs(unsigned int nMs) { scheduler().wait("sleeps", nullptr, scheduler().nowNs() + nMs * NS_PER_MS); }

void note(const std::string& nText) {
  if (Scheduler* const lpScheduler = Scheduler::active()) lpScheduler->point(strdup(nText.c_str()), nullptr);
}

Within::Within(const char* npWhat, unsigned int nMs)
    : mpOuterWhat(scheduler().self().mpWithin), mOuterDueNs(scheduler().self().mWithinNs) {
  scheduler().self().mpWithin = npWhat;
  scheduler().self().mWithinNs = scheduler().nowNs() + nMs * NS_PER_MS;
}

Within::~Within() {
  scheduler().self().mpWithin = mpOuterWhat;
  scheduler().self().mWithinNs = mOuterDueNs;
}

int run(int /*nArgCount*/, char** npArgs, const Scenario* npScenarios, unsigned int nNum) {
  RunnerOptions lOptions;
  if (const char* const lpWrong = readArguments(npArgs + 1, &lOptions)) return refuse(lpWrong);
  LockOrder lOrder;
  if (!lOrder.read(NFW_LOCK_ORDER)) return std::fprintf(stderr, "%s: no order of locks\n", NFW_LOCK_ORDER), 2;
  Runner lRunner(lOptions, lOrder);
  bool lIsFine = true, lIsKnown = false;
  for (unsigned int i = 0; i < nNum; ++i) {
    if (!lOptions.mScenario.empty() && lOptions.mScenario != npScenarios[i].mpName) continue;
    lIsKnown = true;
    lIsFine = lRunner.run(npScenarios[i]) && lIsFine;
  }
  if (!lIsKnown) return refuse(lOptions.mScenario.c_str());
  return lIsFine ? 0 : 1;
}

}  // namespace schedule
