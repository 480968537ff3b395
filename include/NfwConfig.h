/// @file
/// Configuration and initialisation of the library.
#pragma once

#include "NfwExport.h"
#include "NfwLogger.h"
#include "NfwMsgLogInfo.h"

namespace nfw {

/// The limits and ids that the application chooses once. Each value is copied into a static member of the service named
/// beside it, which reads it when it is created. Values are not checked: what a 0 means is the service's affair.
struct Config {
  unsigned int maxProcessMsgListenerNum = 0;      ///< ProcessMsg
  unsigned int maxProcessMsgHookListenerNum = 0;  ///< ProcessMsg
  unsigned int maxMountListenerNum = 0;           ///< MountManager: mount-event listeners
  unsigned int maxRecordEventListenerNum = 0;     ///< Logger
  unsigned int maxPlayerNum = 0;                  ///< Logger
  unsigned int maxLogTypeNum = 0;                 ///< Logger
  /// Logger: largest data of one record, bytes. At least 1023, the longest line of the log: once the Logger is
  /// initialised every line is offered to it, recording or not, and one that is longer costs an error line.
  unsigned int maxLogFieldSize = 0;
  unsigned int logBufferSize = 0;                 ///< Logger: write buffer, bytes
  unsigned int maxLogFileSize = 0;                ///< Logger: bytes
  const MsgLogInfoMap* pMsgLogInfoMap = nullptr;  ///< ProcessMsg: not copied, must outlive the library's use
  unsigned int maxParsedGgaDataListenerNum = 0;   ///< Gnss, as the nine that follow
  unsigned int maxParsedGllDataListenerNum = 0;
  unsigned int maxParsedGsaDataListenerNum = 0;
  unsigned int maxParsedGsvDataListenerNum = 0;
  unsigned int maxParsedVtgDataListenerNum = 0;
  unsigned int maxParsedZdaDataListenerNum = 0;
  unsigned int maxParsedRmcDataListenerNum = 0;
  unsigned int maxParsedPubxDataListenerNum = 0;
  unsigned int maxParsedNmeaDataListenerNum = 0;
  unsigned int maxNmeaDataListenerNum = 0;
  unsigned int maxDeadReckoningNmeaDataListenerNum = 0;  ///< DeadReckoning
  int gnssLoggerId = NO_LOGGER_ID;                       ///< Gnss: the id under which sentences are recorded
  int deadReckoningLoggerId = NO_LOGGER_ID;              ///< DeadReckoning
  int gpsSdkGeodeticSystemType = 0;                      ///< Gnss: 0 WGS-84, 1 Tokyo datum
};

/// Configures the library: once, from the main thread, before any service is used.
/// @return false when it was called before (nothing changes, also after finalizeNaviAppFramework) or when the map of
/// message names is null; everything else is configured all the same in that case.
NFW_API bool initializeNaviAppFramework(const Config& nConfig);

/// The matching last call. It does nothing; finalizeAppLog takes the log's registry down.
NFW_API void finalizeNaviAppFramework();

}  // namespace nfw
