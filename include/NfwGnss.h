/// @file
/// The satellite-positioning service.
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
class GnssDataDispatcher;
class GnssLoggerPlayer;
class GnssSensorSysLoggerPlayer;
class GpsSdkPlayer;
class SourceSwitch;
class ParsedGgaDataListener;
class ParsedGllDataListener;
class ParsedGsaDataListener;
class ParsedGsvDataListener;
class ParsedVtgDataListener;
class ParsedZdaDataListener;
class ParsedRmcDataListener;
class ParsedPubxDataListener;
class ParsedNmeaDataListener;
class NmeaDataListener;

/// Hands satellite-positioning data to listeners: raw sentences, the record of each kind of sentence, and once an epoch
/// the combined record. The data comes from the GPS SDK or from a replay of the data logger or of the sensor log: one
/// source at a time, and listeners receive the same but for the rows of the table in docs/replay.md. A replay of the
/// data logger wins over one of the sensor log, which wins over live data; its end does not switch back to live data,
/// only stopping it does. Live sentences are recorded in both logs, whatever source is on.
///
/// @code
/// nfw::Logger::get()->initialize();
/// nfw::SensorSysLoggerManager::get()->initialize();
/// nfw::Gnss::get()->initialize();
/// nfw::Gnss::get()->attachParsedGgaDataListener(&lMyListener);
/// ...
/// nfw::Logger::get()->stopPlay();                  // where one plays
/// nfw::SensorSysLoggerManager::get()->stopPlay();
/// nfw::Gnss::get()->shutdown();
/// nfw::Gnss::destroy();
/// @endcode
///
/// Threads: any thread may call; listeners are called on "nfw::Gnss_SharedThread". The attach and detach operations
/// wait for that thread: do not call them from a callback of another service, nor holding a lock that a listener wants.
/// They need the running thread, so they come after initialize() and fail before it. Both log services must be
/// initialised, and not playing, before initialize(); they outlive this service. Listeners are not owned: detach one
/// before it goes. A listener that blocks delays recording, too; 256 messages wait, later ones are dropped with a line.
class NFW_API Gnss : public SysLogPlaySwitch, public LogPlaySwitch {
 public:
  /// The settings, read when the instance is created: they have no effect on one that exists.
  /// initializeNaviAppFramework sets them from the configuration.
  static void initializeMaxParsedGgaDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedGllDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedGsaDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedGsvDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedVtgDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedZdaDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedRmcDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedPubxDataListenerNum(unsigned int nValue);
  static void initializeMaxParsedNmeaDataListenerNum(unsigned int nValue);
  static void initializeMaxNmeaDataListenerNum(unsigned int nValue);
  static void initializeLoggerId(int nValue);
  static void initializeGpsSdkGeodeticSystemType(int nValue);

  static Gnss* get();  ///< the one instance, created on the first call
  /// Deletes the instance; shutdown() comes first. Not from a listener. An instance whose thread did not end, because a
  /// listener is still in its call, is left behind instead, without another wait: that call may return into it, nobody
  /// is called any more, and the next get() makes a new one.
  static void destroy();

  /// Starts the thread and the sources and goes live. False, with the reason in the log, when a step fails: what was
  /// done before it stays done, and shutdown() is the way back.
  bool initialize();
  /// Switches every source off, leaves the SDK and both log services, and stops the thread. Not from a listener. Stop
  /// a playback first: of the texts that are still queued then, none can be handed on any more, and each writes an
  /// error line for itself and one for its record. A listener that is in its call is waited for 30000 ms.
  void shutdown();

  /// Each returns true also for a null listener and for one that is attached already.
  bool attachParsedGgaDataListener(ParsedGgaDataListener* npListener);
  bool attachParsedGllDataListener(ParsedGllDataListener* npListener);
  bool attachParsedGsaDataListener(ParsedGsaDataListener* npListener);
  bool attachParsedGsvDataListener(ParsedGsvDataListener* npListener);
  bool attachParsedVtgDataListener(ParsedVtgDataListener* npListener);
  bool attachParsedZdaDataListener(ParsedZdaDataListener* npListener);
  bool attachParsedRmcDataListener(ParsedRmcDataListener* npListener);
  bool attachParsedPubxDataListener(ParsedPubxDataListener* npListener);
  bool attachParsedNmeaDataListener(ParsedNmeaDataListener* npListener);
  bool attachNmeaDataListener(NmeaDataListener* npListener);

  /// After each no call of the listener begins any more.
  void detachParsedGgaDataListener(ParsedGgaDataListener* npListener);
  void detachParsedGllDataListener(ParsedGllDataListener* npListener);
  void detachParsedGsaDataListener(ParsedGsaDataListener* npListener);
  void detachParsedGsvDataListener(ParsedGsvDataListener* npListener);
  void detachParsedVtgDataListener(ParsedVtgDataListener* npListener);
  void detachParsedZdaDataListener(ParsedZdaDataListener* npListener);
  void detachParsedRmcDataListener(ParsedRmcDataListener* npListener);
  void detachParsedPubxDataListener(ParsedPubxDataListener* npListener);
  void detachParsedNmeaDataListener(ParsedNmeaDataListener* npListener);
  void detachNmeaDataListener(NmeaDataListener* npListener);

  /// The play switches, called by the two log services.
  void startSysLogPlay() override;
  void stopSysLogPlay() override;
  void receiveSysLogPlayEnd() override;  ///< nothing: only stopping a replay ends it
  void seekSysLogPlay() override;
  void startLogPlay() override;
  void stopLogPlay() override;
  void receiveLogPlayEnd(int nReason) override;  ///< nothing: only stopping a replay ends it
  void seekLogPlay() override;

  static unsigned int mMaxParsedGgaDataListenerNum;
  static unsigned int mMaxParsedGllDataListenerNum;
  static unsigned int mMaxParsedGsaDataListenerNum;
  static unsigned int mMaxParsedGsvDataListenerNum;
  static unsigned int mMaxParsedVtgDataListenerNum;
  static unsigned int mMaxParsedZdaDataListenerNum;
  static unsigned int mMaxParsedRmcDataListenerNum;
  static unsigned int mMaxParsedPubxDataListenerNum;
  static unsigned int mMaxParsedNmeaDataListenerNum;
  static unsigned int mMaxNmeaDataListenerNum;
  static int mInitializeLoggerId;                  ///< NO_LOGGER_ID: no text is recorded or replayed
  static int mInitializeGpsSdkGeodeticSystemType;  ///< 0 WGS-84, 1 Tokyo datum

 private:
  Gnss();
  ~Gnss() override;
  friend class OneInstance<Gnss>;
  static OneInstance<Gnss>& instance();
  bool end();

  const std::unique_ptr<utl::MsgDrivenSharedThread> mpThread;
  const std::unique_ptr<GnssDataDispatcher> mpDispatcher;
  const std::unique_ptr<GnssSensorSysLoggerPlayer> mpSysLogPlayer;
  const std::unique_ptr<GnssLoggerPlayer> mpLogPlayer;
  const std::unique_ptr<GpsSdkPlayer> mpSdkPlayer;
  const std::unique_ptr<SourceSwitch> mpSources;
};

}  // namespace nfw
