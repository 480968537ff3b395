#include "Runner.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>

#include "Scheduler.h"

extern "C" void __sanitizer_set_death_callback(void (*)()) __attribute__((weak));

namespace schedule {

namespace {

const unsigned int MOST_SECONDS = 60;  // of real time, for one seed

void printStateOnDeath() {
  if (Scheduler* const lpScheduler = Scheduler::active()) lpScheduler->printState(stderr);
  std::fflush(nullptr);
}

void onSignal(int nSignal) {
  signal(nSignal, SIG_DFL);
  printStateOnDeath();
  raise(nSignal);
}

void tellOfDeath() {
  signal(SIGALRM, &onSignal);
  alarm(MOST_SECONDS);
  if (__sanitizer_set_death_callback != nullptr) return __sanitizer_set_death_callback(&printStateOnDeath);
  for (const int lSignal : {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL}) signal(lSignal, &onSignal);
}

void stayOn(unsigned int nProcessor) {
  cpu_set_t lSet;
  CPU_ZERO(&lSet);
  CPU_SET(nProcessor, &lSet);
  sched_setaffinity(0, sizeof lSet, &lSet);
}

unsigned int processors() {
  const long lNum = sysconf(_SC_NPROCESSORS_ONLN);
  return lNum > 0 ? static_cast<unsigned int>(lNum) : 1;
}

}  // namespace

Runner::Runner(const RunnerOptions& nOptions, const LockOrder& nOrder)
    : mOptions(nOptions), mOrder(nOrder), mSlots(nOptions.mIsTraced ? 1 : processors()) {
  const bool lHasMemory = std::filesystem::is_directory("/dev/shm");
  std::string lTop = (lHasMemory ? "/dev/shm" : std::filesystem::temp_directory_path().string()) + "/schedule-XXXXXX";
  if (mkdtemp(lTop.data()) == nullptr) std::perror(lTop.c_str()), std::exit(1);
  mTop = lTop;
  void* const lpShared =
      mmap(nullptr, sizeof(Result) * mSlots.size(), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (lpShared == MAP_FAILED) std::perror("mmap"), std::exit(1);
  for (size_t i = 0; i < mSlots.size(); ++i) {
    mSlots[i].mDirectory = mTop + "/" + std::to_string(i);
    mSlots[i].mReport = mTop + "/report" + std::to_string(i);
    mSlots[i].mpResult = static_cast<Result*>(lpShared) + i;
    std::filesystem::create_directory(mSlots[i].mDirectory);
  }
}

Runner::~Runner() {
  std::error_code lIgnored;
  std::filesystem::remove_all(mTop, lIgnored);
}

bool Runner::run(const Scenario& nScenario) {
  const auto lBegin = std::chrono::steady_clock::now();
  mDone = mSteps = 0, mVirtualMs = 0;
  std::vector<uint64_t> lKept;
  for (const uint64_t lSeed : nScenario.mKept) {
    if (lSeed != 0 && mOptions.mCount > 1) lKept.push_back(lSeed);
  }
  bool lIsFine = true;
  for (uint64_t i = 0; i < lKept.size() + mOptions.mCount && lIsFine; ++i) {
    while (std::none_of(mSlots.begin(), mSlots.end(), [](const Slot& n) { return n.mProcess == 0; })) {
      lIsFine = awaitOne(nScenario) && lIsFine;
    }
    if (!lIsFine) break;
    Slot& lFree = *std::find_if(mSlots.begin(), mSlots.end(), [](const Slot& n) { return n.mProcess == 0; });
    begin(lFree, nScenario, i < lKept.size() ? lKept[i] : mOptions.mSeed + i - lKept.size());
  }
  while (std::any_of(mSlots.begin(), mSlots.end(), [](const Slot& n) { return n.mProcess != 0; })) {
    lIsFine = awaitOne(nScenario) && lIsFine;
  }
  const std::chrono::duration<double> lTook = std::chrono::steady_clock::now() - lBegin;
  const uint64_t lNum = std::max<uint64_t>(mDone, 1);
  std::printf("%s%-12s %8llu seeds  %7.1f s  %6.2f ms, %llu steps and %.1f s of virtual time a seed  %s\n",
              isatty(1) != 0 ? "\r" : "", nScenario.mpName, static_cast<unsigned long long>(mDone), lTook.count(),
              lTook.count() * 1000 / static_cast<double>(lNum), static_cast<unsigned long long>(mSteps / lNum),
              static_cast<double>(mVirtualMs) / 1000 / static_cast<double>(lNum), lIsFine ? "no finding" : "A FINDING");
  std::fflush(stdout);
  return lIsFine;
}

void Runner::begin(Slot& nSlot, const Scenario& nScenario, uint64_t nSeed) {
  std::fflush(nullptr);
  nSlot.mSeed = nSeed;
  *nSlot.mpResult = {};
  nSlot.mProcess = fork();
  if (nSlot.mProcess < 0) std::perror("fork"), std::exit(1);
  if (nSlot.mProcess == 0) beScenario(nSlot, nScenario);
}

void Runner::beScenario(const Slot& nSlot, const Scenario& nScenario) const {
  stayOn(static_cast<unsigned int>(&nSlot - mSlots.data()));
  const int lReport = ::open(nSlot.mReport.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_APPEND, 0600);
  if (lReport < 0 || dup2(lReport, 2) < 0 || chdir(nSlot.mDirectory.c_str()) != 0) _exit(3);
  tellOfDeath();
  auto* const lpScheduler = new Scheduler(nSlot.mSeed, mOrder);
  lpScheduler->trace().mIsLive = mOptions.mIsTraced;
  nScenario.mpRun();
  lpScheduler->end();
  *nSlot.mpResult = {lpScheduler->trace().digest(), lpScheduler->trace().steps(),
                     (lpScheduler->nowNs() - Scheduler::BEGIN_NS) / NS_PER_MS};
  std::fflush(nullptr);
  _exit(0);
}

bool Runner::awaitOne(const Scenario& nScenario) {
  int lStatus = 0;
  const pid_t lProcess = waitpid(-1, &lStatus, 0);
  for (Slot& lEach : mSlots) {
    if (lEach.mProcess == lProcess) return finish(lEach, nScenario, lStatus);
  }
  return true;
}

bool Runner::finish(Slot& nSlot, const Scenario& nScenario, int nStatus) {
  nSlot.mProcess = 0;
  for (const auto& lEach : std::filesystem::directory_iterator(nSlot.mDirectory)) std::filesystem::remove_all(lEach);
  if (WIFSIGNALED(nStatus)) return tell(nSlot, nScenario, strsignal(WTERMSIG(nStatus)));
  if (nStatus != 0) return tell(nSlot, nScenario, "a finding");
  if (mOptions.mIsChecked && ++nSlot.mRound == 1) {
    nSlot.mDigest = nSlot.mpResult->mDigest;
    begin(nSlot, nScenario, nSlot.mSeed);
    return true;
  }
  nSlot.mRound = 0;
  if (mOptions.mIsChecked && nSlot.mDigest != nSlot.mpResult->mDigest) {
    return tell(nSlot, nScenario, "a second run takes other steps than the first");
  }
  ++mDone;
  mSteps += nSlot.mpResult->mSteps;
  mVirtualMs += nSlot.mpResult->mVirtualMs;
  if (mDone % 64 == 0) showProgress(nScenario);
  return true;
}

void Runner::showProgress(const Scenario& nScenario) const {
  if (isatty(1) == 0) return;
  std::printf("\r%-12s %8llu of %llu seeds", nScenario.mpName, static_cast<unsigned long long>(mDone),
              static_cast<unsigned long long>(mOptions.mCount));
  std::fflush(stdout);
}

bool Runner::tell(const Slot& nSlot, const Scenario& nScenario, const char* npWhat) {
  ++mDone;
  std::cout << std::ifstream(nSlot.mReport).rdbuf();
  std::cout.clear();
  std::cout << nScenario.mpName << ": seed " << nSlot.mSeed << ": " << npWhat << "; again with: scripts/schedule "
            << nScenario.mpName << " --seed " << nSlot.mSeed << std::endl;
  return false;
}

}  // namespace schedule
