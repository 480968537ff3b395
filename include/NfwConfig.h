/// @file
/// Configuration and initialisation of the library.
#pragma once

#include "NfwExport.h"
#include "NfwLogger.h"
#include "NfwMsgLogInfo.h"

namespace nfw {

/// The limits and ids that the application chooses once. Each value is copied into a static member of the service named
/// beside it, which reads it when it is created. Values are not checked here: what a 0 does is said with each field.
///
/// A set that works, for an application that records and replays positions (examples/guide.h is compiled):
/// @code
/// inline nfw::Config guideConfig() {
///   static const nfw::MsgLogInfoMap NO_NAMES(1, false);
///   nfw::Config lConfig;
///   lConfig.pMsgLogInfoMap = &NO_NAMES;
///   lConfig.maxMountListenerNum = 4;
///   lConfig.maxRecordEventListenerNum = 4;
///   lConfig.maxPlayerNum = 4;            // two of them are taken by Gnss and DeadReckoning
///   lConfig.maxLogTypeNum = 8;           // likewise
///   lConfig.maxLogFieldSize = 4096;      // takes every line of the log, which has 1023 characters at most
///   lConfig.logBufferSize = 256 * 1024;  // what waits for the disk
///   lConfig.maxLogFileSize = 16 << 20;   // then the next file
///   lConfig.gnssLoggerId = 20;           // any two ids but 255, which are the lines of the log
///   lConfig.deadReckoningLoggerId = 21;
///   return lConfig;
/// }
/// @endcode
///
/// The capacities of Gnss and DeadReckoning are room that is taken at once, of 64 places at most; a list grows when
/// more listeners come. A 0 costs an allocation at the first attach and nothing else. All other numbers of listeners,
/// players and log types are limits: one more than that is refused with false and, by the service itself, without a
/// line.
struct Config {
  /// ProcessMsg: listeners of inter-process messages. Kept for that service, which is not part of this library: 0.
  unsigned int maxProcessMsgListenerNum = 0;
  /// ProcessMsg: hooks that see messages before they are sent. As above.
  unsigned int maxProcessMsgHookListenerNum = 0;
  /// MountManager: the most mount-event listeners, one for each part of the application that wants to know. 0: none can
  /// be attached.
  unsigned int maxMountListenerNum = 0;
  /// Logger: the most listeners that are told when a recording starts and stops. 0: none can be attached.
  unsigned int maxRecordEventListenerNum = 0;
  /// Logger and SensorSysLoggerManager: the most players in each. Gnss takes one place in each, DeadReckoning another:
  /// 2 and one for each player of the application. 0: both facades fail to initialise.
  unsigned int maxPlayerNum = 0;
  /// Logger and SensorSysLoggerManager: the most play listeners in each, one a log type id. In each of them Gnss takes
  /// one place and DeadReckoning another (in the Logger only with an id, see gnssLoggerId): 2 and one for each id that
  /// the application replays. Up to 4096 of them lengthen the service's queue. 0: both facades fail to initialise.
  unsigned int maxLogTypeNum = 0;
  /// Logger: largest data of one record, bytes, written or replayed. At least 1023, the longest line of the log: once
  /// the Logger is initialised every line is offered to it, recording or not, and one that is longer costs an error
  /// line. While an id is replayed it holds 52 blocks of this size. 0: only records without data are taken, and every
  /// line of the log costs another.
  unsigned int maxLogFieldSize = 0;
  /// Logger: bytes between the callers and the disk. The writer's thread takes 10 KiB at a time; 64 KiB and more keep
  /// callers quick. 0: each record is written to the file by its caller,
  /// with four warning lines.
  unsigned int logBufferSize = 0;
  /// Logger: bytes of one file, up to 4 GiB less one; a record that would go beyond begins the next file. 1 MiB and
  /// more: one recorder makes at most 100 files in a second under one prefix. 0: no recording starts.
  unsigned int maxLogFileSize = 0;
  /// ProcessMsg: names of inter-process messages; an empty map will do. Not copied, must outlive the library's use.
  /// Null: initializeNaviAppFramework() says false and all else works.
  const MsgLogInfoMap* pMsgLogInfoMap = nullptr;
  unsigned int maxParsedGgaDataListenerNum = 0;   ///< Gnss, as the nine that follow: room for listeners, see above
  unsigned int maxParsedGllDataListenerNum = 0;   ///< of GLL
  unsigned int maxParsedGsaDataListenerNum = 0;   ///< of GSA
  unsigned int maxParsedGsvDataListenerNum = 0;   ///< of GSV
  unsigned int maxParsedVtgDataListenerNum = 0;   ///< of VTG
  unsigned int maxParsedZdaDataListenerNum = 0;   ///< of ZDA
  unsigned int maxParsedRmcDataListenerNum = 0;   ///< of RMC
  unsigned int maxParsedPubxDataListenerNum = 0;  ///< of the receiver's own `$PUBX`
  unsigned int maxParsedNmeaDataListenerNum = 0;  ///< of combined records, one an epoch
  unsigned int maxNmeaDataListenerNum = 0;        ///< of sentences as they came
  /// DeadReckoning: room for its listeners, see above.
  unsigned int maxDeadReckoningNmeaDataListenerNum = 0;
  /// Gnss: the id of the Logger under which sentences are recorded, and from which they are replayed. 0 to 0x7FFFFFFE
  /// but 255, and another one than that of DeadReckoning, for an id has one play listener. 0 is an id as any. A
  /// negative one makes Gnss::initialize() fail. NO_LOGGER_ID: neither recorded nor replayed as text; the sensor log
  /// does both.
  int gnssLoggerId = NO_LOGGER_ID;
  /// DeadReckoning: likewise, for its reports.
  int deadReckoningLoggerId = NO_LOGGER_ID;
  /// Gnss: the geodetic system that the GPS SDK is asked for. 0 WGS-84, which maps of today have; 1 Tokyo datum. Any
  /// other makes Gnss::initialize() fail. A replay is not converted.
  int gpsSdkGeodeticSystemType = 0;
};

/// Configures the library: once, from the main thread, before any service is used.
/// @return false when it was called before (nothing changes, also after finalizeNaviAppFramework) or when the map of
/// message names is null; everything else is configured all the same in that case.
NFW_API bool initializeNaviAppFramework(const Config& nConfig);

/// The matching last call. It does nothing; finalizeAppLog takes the log's registry down.
NFW_API void finalizeNaviAppFramework();

}  // namespace nfw
