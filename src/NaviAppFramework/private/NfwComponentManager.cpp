#include "NfwComponentManager.h"

#include "FieldMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwPhaseIndex.h"
#include "NfwThreadMsgProfilerManager.h"
#include "ServiceThread.h"
#include "Watched.h"

namespace nfw {

/// One row a phase: the states around it, what it calls, and its words.
struct ComponentManager::Phase {
  int mRequiredState;
  int mRunningState;
  int mDoneState;
  int (Component::*mpRun)();
  bool (Component::*mpIsComplete)() const;
  void (ComponentStatusListener::*mpOnComplete)();
  const char* mpDriver;
  const char* mpHandler;
  const char* mpEntry;
  const char* mpLateOpening;
  const char* mpLateClosing;
};

namespace {

enum State { CREATED = 0, STOPPING = 7, FINALIZING = 11, FINALIZED = 12 };

const int FIRST_PHASE_MSG = ownMsgId(0x02);     // 0x80000C02 to C07, one a phase
const int FIRST_COMPLETE_MSG = ownMsgId(0x08);  // 0x80000C08 to C0D, one a phase

const unsigned int LATE_MS = 30000;
const unsigned int WATCH_QUEUE_LENGTH = 16;

/// Carries the component that completed; it may be gone when the message is handled.
class ComponentMsg : public PointerMsg<Component> {
 public:
  static constexpr const char* NAME = "ComponentMsg";
  using PointerMsg<Component>::PointerMsg;
};

class WatchTimerMsg : public utl::TimerMsg {
 public:
  static constexpr const char* NAME = "TimerMsg";
};

const ThreadMsgProfile<ComponentMsg> gThreadProfile(THREAD_MSG_COMPONENT_MANAGER);
const ThreadMsgProfile<WatchTimerMsg> gWatchProfile(THREAD_MSG_COMPONENT_MANAGER_WATCH);

/// Completes every phase at once, so that the listener is told also when there is no other component.
class DummyComponent : public Component {
 public:
  DummyComponent() : Component("DummyComponent") {}

 private:
  int initializeBeforeQuickBootImp() override { return PHASE_DONE; }
  int initializeAfterQuickBootImp() override { return PHASE_DONE; }
  int startImp() override { return PHASE_DONE; }
  int stopImp() override { return PHASE_DONE; }
  int shutdownImp() override { return PHASE_DONE; }
};

unsigned int withDummy(unsigned int nMaxComponentNum) {
  return nMaxComponentNum < 0xFFFFFFFFu ? nMaxComponentNum + 1 : nMaxComponentNum;
}

}  // namespace

// The first closing line is shorter than its opening line: kept, tools look for it. The stop row's required state
// stands for "any before stopping".
const ComponentManager::Phase ComponentManager::PHASES[PHASE_NUM] = {
    {0, 1, 2, &Component::initializeBeforeQuickBoot, &Component::isPreQuickBootComplete,
     &ComponentStatusListener::onPreQuickBootComplete, "initializeBeforeQuickBoot", "onInitializeBeforQuickBoot",
     "setBeforeQuickBootComplete", "##### Pre QuickBoot of Component is Too Late #####",
     "#####################################"},
    {2, 3, 4, &Component::initializeAfterQuickBoot, &Component::isInitializeComplete,
     &ComponentStatusListener::onInitializeComplete, "initializeAfterQuickBoot", "onInitializeAfterQuickBoot",
     "setInitializeComplete", "##### Initialize of Component is Too Late #####",
     "###############################################"},
    {4, 5, 6, &Component::start, &Component::isStartComplete, &ComponentStatusListener::onStartComplete, "start",
     "onStart", "setStartComplete", "##### Start of Component is Too Late #####",
     "##########################################"},
    {6, STOPPING, 8, &Component::stop, &Component::isStopComplete, &ComponentStatusListener::onStopComplete, "stop",
     "onStop", "setStopComplete", "##### Stop of Component is Too Late #####",
     "#########################################"},
    {8, 9, 10, &Component::shutdown, &Component::isShutdownComplete, &ComponentStatusListener::onShutdownComplete,
     "shutdown", "onShutdown", "setShutdownComplete", "##### Shutdown of Component is Too Late #####",
     "#############################################"},
    {10, FINALIZING, FINALIZED, &Component::finalize, &Component::isFinalizeComplete,
     &ComponentStatusListener::onFinalizeComplete, "finalize", "onFinalize", "setFinalizeComplete",
     "##### Finalize of Component is Too Late #####", "#############################################"},
};

ComponentManager::ComponentManager(unsigned int nMaxComponentNum)
    : mComponentList(withDummy(nMaxComponentNum), false),
      mpWatchThread(new utl::MsgDrivenThread(ThreadMsgProfilerManager::profiledSize(THREAD_MSG_COMPONENT_MANAGER_WATCH),
                                             WATCH_QUEUE_LENGTH, "nfw::ComponentManager_Watch_Thread", 1)) {
  addComponent(utl::SmartPointer<Component>(new DummyComponent));
}

// A phase that begins meanwhile runs under its watch to the end: the watch goes last.
ComponentManager::~ComponentManager() {
  if (utl::MsgDrivenSharedThread* const lpThread = getThreadInUse()) watched([&] { lpThread->abortMsg(this); });
  stopThread(*mpWatchThread);
}

unsigned int ComponentManager::getMaxMsgDataSize() {
  return ThreadMsgProfilerManager::profiledSize(THREAD_MSG_COMPONENT_MANAGER);
}

bool ComponentManager::setStatusListener(ComponentStatusListener* npListener) {
  const WatchedLock lLock(mSync);
  if (!isConfigurable()) return false;
  mpStatusListener = npListener;
  return true;
}

bool ComponentManager::addComponent(utl::SmartPointer<Component> npComponent) {
  {
    const WatchedLock lLock(mSync);
    if (!isConfigurable()) return false;
    if (npComponent.isNull()) return true;
    if (mComponentList.add(npComponent)) {
      npComponent->setManager(this);
      return true;
    }
  }
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::addComponent(): Can't add [%s] to ComponentList",
         npComponent->getComponentName());
  return false;
}

bool ComponentManager::initializeThread(utl::MsgDrivenSharedThread* npThread) {
  {
    const WatchedLock lLock(mSync);
    if (mState != CREATED) return false;
  }
  if (npThread == nullptr) return false;
  if (!npThread->isRunning()) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::initializeThread(): Thread is not running");
    return false;
  }
  if (!startThread(*mpWatchThread, this)) return false;
  const WatchedLock lLock(mSync);
  mpThread = npThread;
  return true;
}

bool ComponentManager::initializeBeforeQuickBoot() { return drivePhase(PRE_QUICK_BOOT); }
bool ComponentManager::initializeAfterQuickBoot() { return drivePhase(INITIALIZE); }
bool ComponentManager::start() { return drivePhase(START); }
bool ComponentManager::stop() { return drivePhase(STOP); }
bool ComponentManager::shutdown() { return drivePhase(SHUTDOWN); }
bool ComponentManager::finalize() { return drivePhase(FINALIZE); }

void ComponentManager::setBeforeQuickBootComplete(Component* npComponent) {
  reportComplete(PRE_QUICK_BOOT, npComponent);
}
void ComponentManager::setInitializeComplete(Component* npComponent) { reportComplete(INITIALIZE, npComponent); }
void ComponentManager::setStartComplete(Component* npComponent) { reportComplete(START, npComponent); }
void ComponentManager::setStopComplete(Component* npComponent) { reportComplete(STOP, npComponent); }
void ComponentManager::setShutdownComplete(Component* npComponent) { reportComplete(SHUTDOWN, npComponent); }
void ComponentManager::setFinalizeComplete(Component* npComponent) { reportComplete(FINALIZE, npComponent); }

void ComponentManager::receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) {
  utl::MsgDrivenSharedThread* const lpThread = getThread();
  if (lpThread == nullptr) return;
  if (nThreadId == lpThread->getId()) {
    receiveThreadMsg(nMsg);
  } else if (nThreadId == mpWatchThread->getId()) {
    receiveWatchThreadMsg(nMsg);
  } else {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::receiveMsg(): Unknown ThreadId: 0x%04x",
           static_cast<unsigned int>(nThreadId));
  }
}

bool ComponentManager::isConfigurable() const { return mState == CREATED && mpThread == nullptr; }

utl::MsgDrivenSharedThread* ComponentManager::getThread() {
  const WatchedLock lLock(mSync);
  return mpThread;
}

utl::MsgDrivenSharedThread* ComponentManager::getThreadInUse() {
  const WatchedLock lLock(mSync);
  return mpThread != nullptr ? mpThread : mpEndingThread;
}

bool ComponentManager::drivePhase(int nPhase) {
  const Phase& lPhase = PHASES[nPhase];
  {
    const WatchedLock lLock(mSync);
    // A partly started system can be stopped too.
    const bool lIsAllowed = nPhase == STOP ? mState < STOPPING : mState == lPhase.mRequiredState;
    if (!lIsAllowed || mpThread == nullptr) return false;
    const int lPreviousState = mState;
    mState = lPhase.mRunningState;
    if (post(utl::Msg(FIRST_PHASE_MSG + nPhase))) return true;
    mState = lPreviousState;
  }
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::%s(): Can't post thread", lPhase.mpDriver);
  return false;
}

void ComponentManager::reportComplete(int nPhase, Component* npComponent) {
  {
    const WatchedLock lLock(mSync);
    if (mpThread == nullptr) return;
    if (post(ComponentMsg(FIRST_COMPLETE_MSG + nPhase, npComponent))) return;
  }
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::%s(): Can't post thread", PHASES[nPhase].mpEntry);
}

bool ComponentManager::post(const utl::Msg& nMsg) {
  const WatchedStep lStep(Here::now());
  return mpThread->postMsg(this, nMsg);
}

void ComponentManager::receiveThreadMsg(utl::ThreadRawMsg& nMsg) {
  int lMsgId = 0;
  if (!readMsgId(nMsg, "ComponentManager", "receiveThreadMsg", &lMsgId)) return;
  if (lMsgId >= FIRST_PHASE_MSG && lMsgId < FIRST_PHASE_MSG + PHASE_NUM) {
    onPhase(lMsgId - FIRST_PHASE_MSG);
  } else if (lMsgId >= FIRST_COMPLETE_MSG && lMsgId < FIRST_COMPLETE_MSG + PHASE_NUM) {
    onPhaseComplete(lMsgId - FIRST_COMPLETE_MSG);
  } else {
    logUnknownMsg("ComponentManager", "receiveThreadMsg", lMsgId);
  }
}

void ComponentManager::receiveWatchThreadMsg(utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<ComponentManager> ROUTES[] = {{utl::TimerMsg::MSG_ID, &ComponentManager::onWatchTimer}};
  routeMsg(*this, ROUTES, nMsg, "ComponentManager", "receiveWatchThreadMsg");
}

void ComponentManager::onPhase(int nPhase) {
  {
    const WatchedLock lLock(mSync);
    restartWatchTimer(nPhase);
  }
  unsigned int lIndex = 0;
  for (utl::SmartPointer<Component> lpComponent = getComponent(lIndex); lpComponent;
       lpComponent = getComponent(++lIndex)) {
    (lpComponent.get()->*PHASES[nPhase].mpRun)();
  }
}

void ComponentManager::onPhaseComplete(int nPhase) {
  const Phase& lPhase = PHASES[nPhase];
  if (countCompletion(nPhase) > 0) return;
  if (nPhase == FINALIZE) return onAllFinalized();

  ComponentStatusListener* lpListener = nullptr;
  {
    const WatchedLock lLock(mSync);
    killWatchTimer();
    if (mState != lPhase.mRunningState) return;
    mState = lPhase.mDoneState;
    lpListener = mpStatusListener;
  }
  if (lpListener != nullptr) (lpListener->*lPhase.mpOnComplete)();
}

// No lock is held while the watch thread stops: its handler may be waiting for it. Nothing of this object is touched
// after the listener's call, in which the application may delete the manager.
void ComponentManager::onAllFinalized() {
  {
    const WatchedLock lLock(mSync);
    killWatchTimer();
  }
  stopThread(*mpWatchThread);
  {
    const WatchedLock lLock(mSync);
    auto* const lpThread = mpThread;
    watched([&] { lpThread->abortMsg(this); });
    std::swap(mpThread, mpEndingThread);
  }
  releaseComponents();

  ComponentStatusListener* lpListener = nullptr;
  {
    const WatchedLock lLock(mSync);
    mpEndingThread = nullptr;
    if (mState != FINALIZING) return;
    mState = FINALIZED;
    std::swap(lpListener, mpStatusListener);
  }
  if (lpListener != nullptr) lpListener->onFinalizeComplete();
}

void ComponentManager::onWatchTimer(utl::ThreadRawMsg& nMsg) {
  utl::TimerMsg lMsg;
  lMsg.restoreFrom(nMsg);
  const WatchedLock lLock(mSync);
  if (lMsg.getTimerId() != mTimerId) return;
  killWatchTimer();
  logLateComponents();
}

void ComponentManager::restartWatchTimer(int nPhase) {
  killWatchTimer();
  mTimerId = mpWatchThread->setTimer(LATE_MS, 1, 1, 0);
  if (mTimerId != -1) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "ComponentManager::%s(): Can't set timer", PHASES[nPhase].mpHandler);
}

void ComponentManager::killWatchTimer() {
  if (mTimerId != -1) mpWatchThread->killTimer(mTimerId, 1);
  mTimerId = -1;
}

void ComponentManager::logLateComponents() {
  for (const Phase& lPhase : PHASES) {
    if (lPhase.mRunningState != mState) continue;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "%s", lPhase.mpLateOpening);
    for (unsigned int i = 0; i < mComponentList.size(); ++i) {
      const Component& lComponent = *mComponentList[i];
      if ((lComponent.*lPhase.mpIsComplete)()) continue;
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "# [%s] is not complete", lComponent.getComponentName());
    }
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "%s", lPhase.mpLateClosing);
  }
}

/// The number of components whose completion is still to come.
unsigned int ComponentManager::countCompletion(int nPhase) {
  const unsigned int lCount = ++mCompleteCount[nPhase];
  const WatchedLock lLock(mSync);
  return lCount < mComponentList.size() ? mComponentList.size() - lCount : 0;
}

utl::SmartPointer<Component> ComponentManager::getComponent(unsigned int nIndex) {
  const WatchedLock lLock(mSync);
  return nIndex < mComponentList.size() ? mComponentList[nIndex] : utl::SmartPointer<Component>();
}

/// A component's destructor may wait for a thread of its own that reports to this manager: it runs without the lock.
void ComponentManager::releaseComponents() {
  ComponentList lReleased(0, false);
  const WatchedLock lLock(mSync);
  lReleased.swap(mComponentList);
}

}  // namespace nfw
