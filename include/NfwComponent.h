/// @file
/// A unit of an application that takes part in the staged boot and shutdown.
#pragma once

#include "NfwExport.h"
#include "NfwThreadSafety.h"
#include "ZTSync.h"
#include "utl/BasicString.h"

namespace nfw {

class ComponentManager;

/// What a component answers to a phase. Any other value is logged and counts as done.
enum PhaseResult : int {
  PHASE_DONE = 0,
  PHASE_DONE_ALSO = 1,  ///< the same as PHASE_DONE, kept for applications that tell the two apart
  PHASE_FAILED = 2,     ///< logged; the phase is complete all the same
  PHASE_PENDING = 3,    ///< the component calls the phase's set...Complete() itself, later
};

/// Base of a component. It passes through six phases, always in this order: initialise before quick boot, initialise
/// after quick boot, start, stop, shutdown, finalise. A component implements one operation a phase and answers with a
/// PhaseResult; the ComponentManager calls them.
///
/// @code
/// class MapComponent : public nfw::Component {
///  public:
///   MapComponent() : nfw::Component("Map") {}
///  private:
///   int initializeBeforeQuickBootImp() override { return nfw::PHASE_DONE; }
///   int initializeAfterQuickBootImp() override { return nfw::PHASE_DONE; }
///   int startImp() override { loadTilesOnMyThread(); return nfw::PHASE_PENDING; }  // later: setStartComplete()
///   int stopImp() override { return nfw::PHASE_DONE; }
///   int shutdownImp() override { return nfw::PHASE_DONE; }
/// };
/// @endcode
///
/// Threads: the phases run on the manager's message thread. The completion operations may be called from any thread;
/// the manager must outlive every such call. Ownership: the application hands the component to the manager, which
/// releases it when the finalise phase is complete.
class NFW_API Component {
 public:
  explicit Component(const char* npName);  ///< copied; null is the empty name
  virtual ~Component();
  Component(const Component&) = delete;
  Component& operator=(const Component&) = delete;

  /// Called by the manager when it adopts the component.
  void setManager(ComponentManager* npManager);

  const char* getComponentName() const;

  bool isPreQuickBootComplete() const;
  bool isInitializeComplete() const;
  bool isStartComplete() const;
  bool isStopComplete() const;
  bool isShutdownComplete() const;
  bool isFinalizeComplete() const;
  bool isStopRequested() const;  ///< true from the beginning of stop() on

  /// Each runs its phase and returns what the component answered. Called by the manager.
  int initializeBeforeQuickBoot();
  int initializeAfterQuickBoot();
  int start();
  int stop();
  int shutdown();
  int finalize();

  /// Each reports its phase complete, once: a second call does nothing. A component that answered PHASE_PENDING calls
  /// it when it is ready; one called before the manager adopted the component is remembered and never reported.
  void setBeforeQuickBootComplete();
  void setInitializeComplete();
  void setStartComplete();
  void setStopComplete();
  void setShutdownComplete();
  void setFinalizeComplete();

 protected:
  virtual int initializeBeforeQuickBootImp() = 0;
  virtual int initializeAfterQuickBootImp() = 0;
  virtual int startImp() = 0;
  virtual int stopImp() = 0;
  virtual int shutdownImp() = 0;
  virtual int finalizeImp();  ///< PHASE_DONE unless overridden

 private:
  struct Phase;
  static const Phase PHASES[];
  static constexpr int PHASE_NUM = 6;

  int runPhase(int nPhase);
  void setComplete(int nPhase);
  bool isComplete(int nPhase) const;

  ComponentManager* mpManager NFW_GUARDED_BY(mSync) = nullptr;  // not owned
  utl::BasicString<char> mName;
  bool mIsComplete[PHASE_NUM] NFW_GUARDED_BY(mSync) = {};
  bool mIsStopRequested NFW_GUARDED_BY(mSync) = false;
  mutable ZTSync mSync{"nfw::Component"};
};

}  // namespace nfw
