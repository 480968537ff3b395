/// @file
/// Drives the components of an application through their phases.
#pragma once

#include <memory>

#include "NfwComponent.h"
#include "NfwComponentStatusListener.h"
#include "NfwExport.h"
#include "NfwThreadSafety.h"
#include "utl/Array.h"
#include "utl/MsgDrivenSharedThread.h"
#include "utl/MsgDrivenThread.h"
#include "utl/SmartPointer.h"

namespace nfw {

/// Owns the components and drives them, phase by phase, on a message thread of the application.
///
/// @code
/// utl::MsgDrivenSharedThread lThread(nfw::ComponentManager::getMaxMsgDataSize(), 64, 0, "App_SharedThread", 0);
/// lThread.start(1, 10000, nullptr, 1, 0, utl::ThreadPriority(3), 0);
/// nfw::ComponentManager lManager(8);
/// lManager.setStatusListener(&lStatus);                     // told when all components have completed a phase
/// lManager.addComponent(utl::SmartPointer<nfw::Component>(new MapComponent));
/// lManager.initializeThread(&lThread);
/// lManager.initializeBeforeQuickBoot();                     // and, after each callback, the next phase
/// @endcode
///
/// The shared thread's queue must be longer than the number of components, since all of them may complete a phase while
/// the phase is still being run: with 16 components a queue of 16 loses a completion, with a line, and the phase never
/// ends. The same goes for a component that is added twice: it completes a phase once, and the phase waits for two.
///
/// A phase is started by its driver and complete when every component has completed it; then the listener is told. All
/// phases call the components in the order in which they were added. A component that takes more than 30000 ms is
/// named in the log; a phase is never aborted.
///
/// Threads: drivers, setters and completion entries may be called from any thread, and return at once. Components and
/// listener are called on the shared thread, without a lock. The shared thread and the listener are not owned: the
/// thread must run from initializeThread() until finalise is complete or the manager is gone.
class NFW_API ComponentManager : public utl::ThreadMsgListener {
 public:
  /// @param nMaxComponentNum the most components that the application adds
  explicit ComponentManager(unsigned int nMaxComponentNum);
  /// Not from the watch's thread. What is still queued for the manager is dropped; a phase that runs on the shared
  /// thread is waited for, unless it is that thread which calls.
  ~ComponentManager() override;
  ComponentManager(const ComponentManager&) = delete;
  ComponentManager& operator=(const ComponentManager&) = delete;

  /// What the application's shared thread must at least hold for the manager, in bytes of message data.
  static unsigned int getMaxMsgDataSize();

  /// @return false after initializeThread() or once a phase was started
  bool setStatusListener(ComponentStatusListener* npListener);

  /// A null component is accepted and not added.
  /// @return false after initializeThread(), once a phase was started, or when the list is full
  bool addComponent(utl::SmartPointer<Component> npComponent);

  /// Binds the manager to the application's running thread and starts the watch.
  /// @return false once a phase was started, for a null or stopped thread, or when the watch cannot be started
  bool initializeThread(utl::MsgDrivenSharedThread* npThread);

  /// The drivers. Each returns true when the phase was started; false, without a log line, when the phase before it is
  /// not complete or there is no thread. stop() may be called from any phase before stopping.
  bool initializeBeforeQuickBoot();
  bool initializeAfterQuickBoot();
  bool start();
  bool stop();
  bool shutdown();
  bool finalize();

  /// The completion entries, called by the components.
  void setBeforeQuickBootComplete(Component* npComponent);
  void setInitializeComplete(Component* npComponent);
  void setStartComplete(Component* npComponent);
  void setStopComplete(Component* npComponent);
  void setShutdownComplete(Component* npComponent);
  void setFinalizeComplete(Component* npComponent);

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  using ComponentList = utl::Array<utl::SmartPointer<Component>>;
  struct Phase;
  static const Phase PHASES[];
  static constexpr int PHASE_NUM = 6;

  bool isConfigurable() const NFW_REQUIRES(mSync);
  utl::MsgDrivenSharedThread* getThread();
  utl::MsgDrivenSharedThread* getThreadInUse();
  bool drivePhase(int nPhase);
  void reportComplete(int nPhase, Component* npComponent);
  bool post(const utl::Msg& nMsg) NFW_REQUIRES(mSync);

  void receiveThreadMsg(utl::ThreadRawMsg& nMsg);
  void receiveWatchThreadMsg(utl::ThreadRawMsg& nMsg);
  void onPhase(int nPhase);
  void onPhaseComplete(int nPhase);
  void onAllFinalized();
  void onWatchTimer(utl::ThreadRawMsg& nMsg);

  void restartWatchTimer(int nPhase) NFW_REQUIRES(mSync);
  void killWatchTimer() NFW_REQUIRES(mSync);
  void logLateComponents() NFW_REQUIRES(mSync);
  unsigned int countCompletion(int nPhase);
  utl::SmartPointer<Component> getComponent(unsigned int nIndex);
  void releaseComponents();

  ComponentList mComponentList NFW_GUARDED_BY(mSync);
  ComponentStatusListener* mpStatusListener NFW_GUARDED_BY(mSync) = nullptr;
  utl::MsgDrivenSharedThread* mpThread NFW_GUARDED_BY(mSync) = nullptr;
  utl::MsgDrivenSharedThread* mpEndingThread NFW_GUARDED_BY(mSync) = nullptr;  // that mpThread was, while finalise ends
  std::unique_ptr<utl::MsgDrivenThread> mpWatchThread;
  int mState NFW_GUARDED_BY(mSync) = 0;
  int mTimerId NFW_GUARDED_BY(mSync) = -1;
  unsigned int mCompleteCount[PHASE_NUM] = {};  // on the shared thread only
  ZTSync mSync{"nfw::ComponentManager"};
};

}  // namespace nfw
