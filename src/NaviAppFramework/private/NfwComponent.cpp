#include "NfwComponent.h"

#include "NfwAppLog.h"
#include "NfwComponentManager.h"
#include "NfwPhaseIndex.h"
#include "Watched.h"

namespace nfw {

/// What a phase calls, and how its operation is named in the log.
struct Component::Phase {
  int (Component::*mpImp)();
  void (ComponentManager::*mpReport)(Component* npComponent);
  const char* mpName;
};

const Component::Phase Component::PHASES[PHASE_NUM] = {
    {&Component::initializeBeforeQuickBootImp, &ComponentManager::setBeforeQuickBootComplete,
     "initializeBeforeQuickBoot"},
    {&Component::initializeAfterQuickBootImp, &ComponentManager::setInitializeComplete, "initializeAfterQuickBoot"},
    {&Component::startImp, &ComponentManager::setStartComplete, "start"},
    {&Component::stopImp, &ComponentManager::setStopComplete, "stop"},
    {&Component::shutdownImp, &ComponentManager::setShutdownComplete, "shutdown"},
    {&Component::finalizeImp, &ComponentManager::setFinalizeComplete, "finalize"},
};

Component::Component(const char* npName) : mName(npName) {}

Component::~Component() = default;

void Component::setManager(ComponentManager* npManager) {
  const WatchedLock lLock(mSync);
  mpManager = npManager;
}

const char* Component::getComponentName() const { return mName.c_str(); }

bool Component::isPreQuickBootComplete() const { return isComplete(PRE_QUICK_BOOT); }
bool Component::isInitializeComplete() const { return isComplete(INITIALIZE); }
bool Component::isStartComplete() const { return isComplete(START); }
bool Component::isStopComplete() const { return isComplete(STOP); }
bool Component::isShutdownComplete() const { return isComplete(SHUTDOWN); }
bool Component::isFinalizeComplete() const { return isComplete(FINALIZE); }

bool Component::isStopRequested() const {
  const WatchedLock lLock(mSync);
  return mIsStopRequested;
}

int Component::initializeBeforeQuickBoot() { return runPhase(PRE_QUICK_BOOT); }
int Component::initializeAfterQuickBoot() { return runPhase(INITIALIZE); }
int Component::start() { return runPhase(START); }

int Component::stop() {
  {
    const WatchedLock lLock(mSync);
    mIsStopRequested = true;
  }
  return runPhase(STOP);
}

int Component::shutdown() { return runPhase(SHUTDOWN); }
int Component::finalize() { return runPhase(FINALIZE); }

void Component::setBeforeQuickBootComplete() { setComplete(PRE_QUICK_BOOT); }
void Component::setInitializeComplete() { setComplete(INITIALIZE); }
void Component::setStartComplete() { setComplete(START); }
void Component::setStopComplete() { setComplete(STOP); }
void Component::setShutdownComplete() { setComplete(SHUTDOWN); }
void Component::setFinalizeComplete() { setComplete(FINALIZE); }

int Component::finalizeImp() { return PHASE_DONE; }

int Component::runPhase(int nPhase) {
  const Phase& lPhase = PHASES[nPhase];
  const int lResult = (this->*lPhase.mpImp)();
  switch (lResult) {
    case PHASE_PENDING:
      return lResult;
    case PHASE_DONE:
    case PHASE_DONE_ALSO:
      break;
    case PHASE_FAILED:
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "[%s] %s() is Failure", getComponentName(), lPhase.mpName);
      break;
    default:
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "[%s] %s() is Unknown Result=%d", getComponentName(), lPhase.mpName,
             lResult);
      break;
  }
  setComplete(nPhase);
  return lResult;
}

void Component::setComplete(int nPhase) {
  ComponentManager* lpManager = nullptr;
  {
    const WatchedLock lLock(mSync);
    if (mIsComplete[nPhase]) return;
    mIsComplete[nPhase] = true;
    lpManager = mpManager;
  }
  if (lpManager != nullptr) (lpManager->*PHASES[nPhase].mpReport)(this);
}

bool Component::isComplete(int nPhase) const {
  const WatchedLock lLock(mSync);
  return mIsComplete[nPhase];
}

}  // namespace nfw
