// Components through all phases: completed at once, late, twice, in time or never; a manager destroyed in any state.
#include <array>
#include <atomic>
#include <memory>
#include <mutex>

#include "NfwComponentManager.h"
#include "Scenarios.h"
#include "utl/Event.h"

namespace {

using nfw::Component;

const unsigned int PHASES = 6;
void (Component::*const COMPLETE[PHASES])() = {
    &Component::setBeforeQuickBootComplete, &Component::setInitializeComplete,
    &Component::setStartComplete,           &Component::setStopComplete,
    &Component::setShutdownComplete,        &Component::setFinalizeComplete};
bool (nfw::ComponentManager::*const DRIVE[PHASES])() = {&nfw::ComponentManager::initializeBeforeQuickBoot,
                                                        &nfw::ComponentManager::initializeAfterQuickBoot,
                                                        &nfw::ComponentManager::start,
                                                        &nfw::ComponentManager::stop,
                                                        &nfw::ComponentManager::shutdown,
                                                        &nfw::ComponentManager::finalize};

/// Completes phases on threads of its own.
class Helpers {
 public:
  void ask(const std::function<void()>& nWork) {
    const std::lock_guard<std::mutex> lLock(mMutex);
    if (!mIsOver) mCrew.add(nWork);
  }
  void end() {
    {
      const std::lock_guard<std::mutex> lLock(mMutex);
      mIsOver = true;
    }
    mCrew.join();
  }

 private:
  std::mutex mMutex;
  bool mIsOver = false;
  Crew mCrew;
};

struct Record {
  std::array<std::atomic<unsigned int>, PHASES> mDone{};  // components that have completed the phase
  std::atomic<unsigned int> mNever{0};                    // completions that nobody will report
};

class Part : public Component {
 public:
  Part(Helpers& nHelpers, Record& nRecord) : Component("part"), mHelpers(nHelpers), mRecord(nRecord) {}

 private:
  int initializeBeforeQuickBootImp() override { return run(0); }
  int initializeAfterQuickBootImp() override { return run(1); }
  int startImp() override { return run(2); }
  int stopImp() override { return run(3); }
  int shutdownImp() override { return run(4); }
  int finalizeImp() override { return run(5); }

  int run(unsigned int nPhase) {
    schedule::outward("a component's phase");
    const unsigned int lWay = schedule::pick(40);
    if (lWay == 0 && nPhase < 3) return ++mRecord.mNever, nfw::PHASE_PENDING;
    ++mRecord.mDone[nPhase];
    if (lWay < 12) return lWay % 2 == 0 ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
    if (lWay % 3 == 0) complete(nPhase);
    const unsigned int lTimes = lWay % 3;
    for (unsigned int i = 0; i < lTimes; ++i) mHelpers.ask([this, nPhase] { complete(nPhase); });
    return lWay % 3 == 0 && schedule::flip() ? nfw::PHASE_DONE : nfw::PHASE_PENDING;
  }
  void complete(unsigned int nPhase) { (this->*COMPLETE[nPhase])(); }

  Helpers& mHelpers;
  Record& mRecord;
};

class Status : public nfw::ComponentStatusListener {
 public:
  Status(Record& nRecord, unsigned int nNum) : mRecord(nRecord), mNum(nNum) {}
  void onPreQuickBootComplete() override { told(0); }
  void onInitializeComplete() override { told(1); }
  void onStartComplete() override { told(2); }
  void onStopComplete() override { told(3); }
  void onShutdownComplete() override { told(4); }
  void onFinalizeComplete() override { told(5); }

  utl::Event mTold{false};
  std::array<std::atomic<unsigned int>, PHASES> mTimes{};

 private:
  void told(unsigned int nPhase) {
    schedule::outward("the status listener");
    schedule::require(mRecord.mDone[nPhase] == mNum, "a phase is complete when every component has completed it");
    schedule::require(++mTimes[nPhase] == 1, "a phase is told once");
    mTold.on();
  }
  Record& mRecord;
  const unsigned int mNum;
};

}  // namespace

void components() {
  const unsigned int lNum = 1 + schedule::pick(3);
  utl::MsgDrivenSharedThread lThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "Shared", 0);
  schedule::require(lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0) == 0, "the thread starts");
  Record lRecord;
  Status lStatus(lRecord, lNum);
  Helpers lHelpers;
  auto lpManager = std::make_unique<nfw::ComponentManager>(lNum);
  std::vector<utl::SmartPointer<Component>> lParts;  // a helper may report to one that the manager has released
  for (unsigned int i = 0; i < lNum; ++i) {
    lParts.emplace_back(new Part(lHelpers, lRecord));
    lpManager->addComponent(lParts.back());
  }
  lpManager->setStatusListener(&lStatus);
  schedule::require(lpManager->initializeThread(&lThread), "the manager has its thread");
  const unsigned int lLast = schedule::pick(2 * PHASES);  // destroyed after this one
  for (unsigned int i = 0; i < PHASES && i <= lLast; ++i) {
    lStatus.mTold.off();
    schedule::require((lpManager.get()->*DRIVE[i])(), "a phase begins after the one before");
    schedule::require(!(lpManager.get()->*DRIVE[i])(), "a phase begins once");
    if (i == lLast && schedule::flip()) break;  // in its midst
    const bool lIsTold = lStatus.mTold.waitToOn(31000);
    schedule::require(lIsTold || lRecord.mNever != 0, "a phase ends when every component has completed it");
    if (lIsTold) continue;
    if (i > 2) break;
    lRecord.mNever = 0;
    i = 2;  // a partly started system can be stopped
  }
  {
    const schedule::Within lWithin("the end of the manager", 30000);
    lHelpers.end();
    lpManager.reset();
  }
  schedule::require(lThread.stop(1, 30000) == 0, "the thread stops");
}
