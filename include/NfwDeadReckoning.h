/// @file
/// The dead-reckoning service.
#pragma once

#include <memory>

#include "NfwExport.h"
#include "NfwLogPlaySwitch.h"
#include "NfwSysLogPlaySwitch.h"

namespace utl {
class MsgDrivenSharedThread;
}

namespace nfw {

template <class T>
class OneInstance;
class DeadReckoningDataDispatcher;
class DeadReckoningLoggerPlayer;
class DeadReckoningNmeaDataListener;
class DeadReckoningSdkDataReceiver;
class DeadReckoningSensorSysLoggerPlayer;
class SourceSwitch;

/// Hands dead-reckoning positions to listeners, as sets of sentences. The data comes from the dead-reckoning SDK or
/// from a replay of the data logger or of the sensor log, by the rules of the Gnss service: one source at a time, and a
/// replay of the data logger wins over one of the sensor log, which wins over live data. Live data is recorded in both
/// logs, whatever source is on.
///
/// @code
/// nfw::Logger::get()->initialize();
/// nfw::SensorSysLoggerManager::get()->initialize();
/// nfw::DeadReckoning::get()->initialize();
/// nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&lMyListener);
/// ...
/// nfw::Logger::get()->stopPlay();                  // where one plays
/// nfw::SensorSysLoggerManager::get()->stopPlay();
/// nfw::DeadReckoning::get()->finalize();
/// nfw::DeadReckoning::destroy();
/// @endcode
///
/// Threads: any thread may call; listeners are called on "nfw::DeadReckoning_SharedThread". Attach and detach wait for
/// that thread: do not call them from a callback of another service, nor holding a lock that a listener wants. They
/// need the running thread, so they come after initialize() and fail before it. Both log services must be initialised,
/// and not playing, before initialize(); they outlive this service. Listeners are not owned: detach one before it goes.
/// A listener that blocks delays recording, too; 256 messages wait, later ones are dropped with a line.
class NFW_API DeadReckoning : public SysLogPlaySwitch, public LogPlaySwitch {
 public:
  /// The settings, read when the instance is created: they have no effect on one that exists.
  static void initializeMaxDeadReckoningNmeaDataListenerNum(unsigned int nValue);
  static void initializeLoggerId(int nValue);

  static DeadReckoning* get();  ///< the one instance, created on the first call
  /// Deletes the instance; finalize() comes first. Not from a listener. An instance whose thread did not end, because a
  /// listener is still in its call, is left behind instead, without another wait: that call may return into it, nobody
  /// is called any more, and the next get() makes a new one.
  static void destroy();

  /// Starts the thread and the sources and goes live. False, with the reason in the log, when a step fails: what was
  /// done before it stays done, and finalize() is the way back.
  bool initialize();
  /// Switches every source off, leaves the SDK and both log services, and stops the thread. Not from a listener. Stop
  /// a playback first: what it has queued by then cannot be handed on any more, with an error line for each set. A
  /// listener that is in its call is waited for 30000 ms.
  void finalize();

  /// True also for a null listener and for one that is attached already.
  bool attachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener);
  /// Afterwards no call of the listener begins any more.
  void detachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener);

  /// The play switches, called by the two log services.
  void startSysLogPlay() override;
  void stopSysLogPlay() override;
  void receiveSysLogPlayEnd() override;  ///< nothing: only stopping a replay ends it
  void seekSysLogPlay() override;
  void startLogPlay() override;
  void stopLogPlay() override;
  void receiveLogPlayEnd(int nReason) override;  ///< nothing: only stopping a replay ends it
  void seekLogPlay() override;

  static unsigned int mMaxDeadReckoningNmeaDataListenerNum;
  static int mInitializeLoggerId;  ///< NO_LOGGER_ID: no text is recorded or replayed

 private:
  DeadReckoning();
  ~DeadReckoning() override;
  friend class OneInstance<DeadReckoning>;
  static OneInstance<DeadReckoning>& instance();
  bool end();

  const std::unique_ptr<utl::MsgDrivenSharedThread> mpThread;
  const std::unique_ptr<DeadReckoningDataDispatcher> mpDispatcher;
  const std::unique_ptr<DeadReckoningSensorSysLoggerPlayer> mpSysLogPlayer;
  const std::unique_ptr<DeadReckoningLoggerPlayer> mpLogPlayer;
  const std::unique_ptr<DeadReckoningSdkDataReceiver> mpSdkReceiver;
  const std::unique_ptr<SourceSwitch> mpSources;
};

}  // namespace nfw
