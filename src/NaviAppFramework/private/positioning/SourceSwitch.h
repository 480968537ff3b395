// What the two positioning facades do alike: their three sources, of which one at a time is on.
#pragma once

#include "NfwLogPlayer.h"
#include "NfwSysLogPlayer.h"
#include "NfwThreadSafety.h"
#include "PlaySource.h"
#include "ServiceThread.h"
#include "Watched.h"
#include "ZTSync.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {

/// Starts, switches and stops the sources of one facade. The play switches come from the threads of the two log
/// services; nothing is called outward under the lock but the sources' own switches.
class SourceSwitch {
 public:
  /// A source and its name in the facade's log lines.
  struct Source {
    PlaySource& mSource;
    const char* mpName;
  };

  SourceSwitch(const char* npFacade, const char* npLockName, utl::MsgDrivenSharedThread& nThread, Source nLive,
               Source nSysLog, Source nLog, const Here& nHere = Here::now());

  /// Starts the thread and the sources, attaches the facade to both log services and switches a source on. What was
  /// done before a failing step stays done: shutdown() is the way back.
  bool initialize(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer);
  void shutdown(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer);
  /// Before the facade is deleted: shuts down where that was left out. False when the thread runs on.
  bool end(LogPlayer* npLogPlayer, SysLogPlayer* npSysLogPlayer);

  void startLogPlay() { setPlaying(&SourceSwitch::isLogPlaying, true); }
  void stopLogPlay() { setPlaying(&SourceSwitch::isLogPlaying, false); }
  void startSysLogPlay() { setPlaying(&SourceSwitch::isSysLogPlaying, true); }
  void stopSysLogPlay() { setPlaying(&SourceSwitch::isSysLogPlaying, false); }
  void seekLogPlay() { mLog.mSource.beginAnew(); }
  void seekSysLogPlay() { mSysLog.mSource.beginAnew(); }

 private:
  void forgetPlaying() NFW_EXCLUDES(mSync);
  void setPlaying(bool SourceSwitch::*npFlag, bool nIsPlaying) NFW_EXCLUDES(mSync);
  void select() NFW_REQUIRES(mSync);
  bool initializeSource(const Source& nSource);
  bool attachTo(bool nIsAttached, const char* npService);

  const char* const mpFacade;
  const Here mHere;
  utl::MsgDrivenSharedThread& mThread;
  const Source mLive;
  const Source mSysLog;
  const Source mLog;
  const Source* const mAll[3] = {&mLive, &mSysLog, &mLog};
  ServiceThreadEnd mThreadEnd;
  bool mIsInitialized = false;  // or on the way there: a shutdown is due
  ZTSync mSync;
  bool isLogPlaying NFW_GUARDED_BY(mSync) = false;
  bool isSysLogPlaying NFW_GUARDED_BY(mSync) = false;
};

}  // namespace nfw
