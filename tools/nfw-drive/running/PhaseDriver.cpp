#include "PhaseDriver.h"

#include "DriveLog.h"

namespace drive {

namespace {

struct PhaseRow {
  const char* mpName;
  bool (nfw::ComponentManager::*mpDrive)();
};
const PhaseRow PHASES[PHASE_NUM] = {
    {"before quick boot", &nfw::ComponentManager::initializeBeforeQuickBoot},
    {"after quick boot", &nfw::ComponentManager::initializeAfterQuickBoot},
    {"start", &nfw::ComponentManager::start},
    {"stop", &nfw::ComponentManager::stop},
    {"shutdown", &nfw::ComponentManager::shutdown},
    {"finalize", &nfw::ComponentManager::finalize},
};

}  // namespace

const char* phaseName(Phase nPhase) { return PHASES[nPhase].mpName; }

bool PhaseDriver::begin(Phase nPhase) {
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_DETAIL, "phase %s begins", phaseName(nPhase));
  mBegun[nPhase] = Events::Clock::now();
  return (mManager.*PHASES[nPhase].mpDrive)();
}

void PhaseDriver::complete(Phase nPhase) {
  const std::chrono::duration<double, std::milli> lTime = Events::Clock::now() - mBegun[nPhase];
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "phase %s complete after %.1f ms", phaseName(nPhase), lTime.count());
  mTimes[nPhase] = lTime.count();
  mEvents.notify(Events::PHASE_COMPLETE);
}

}  // namespace drive
