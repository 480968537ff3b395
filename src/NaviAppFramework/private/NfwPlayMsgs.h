// The messages of the playing services, which the data logger and the sensor system log have alike.
#pragma once

#include "NfwFieldMsg.h"
#include "NfwLogFilePath.h"

namespace nfw {

class TimedReplay;

/// A player.
class LogPlayerMsg : public PointerMsg<void> {
 public:
  static constexpr const char* NAME = "LogPlayerMsg";
  using PointerMsg<void>::PointerMsg;
};

/// A log type id and its play listener.
class AttachLogPlayListenerMsg : public FieldMsg<AttachLogPlayListenerMsg> {
 public:
  static constexpr const char* NAME = "AttachLogPlayListenerMsg";
  explicit AttachLogPlayListenerMsg(int nMsgId = RESTORE_MSG_ID, int nLogTypeId = 0, void* npListener = nullptr)
      : FieldMsg(nMsgId), mLogTypeId(nLogTypeId), mpListener(npListener) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mLogTypeId) && nVisit(nSelf.mpListener);
  }

  int mLogTypeId;
  void* mpListener;
};

/// A play listener.
class DetachLogPlayListenerMsg : public PointerMsg<void> {
 public:
  static constexpr const char* NAME = "DetachLogPlayListenerMsg";
  using PointerMsg<void>::PointerMsg;
};

/// A file to play.
class LogPathMsg : public FieldMsg<LogPathMsg> {
 public:
  static constexpr const char* NAME = "LogPathMsg";
  using FieldMsg::FieldMsg;
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mPath);
  }

  char mPath[LOG_PATH_SIZE] = {};
};

/// A replay that has nothing more to play, or null: the end of playback is to be judged.
class LogPlayDataDispatcherMsg : public PointerMsg<TimedReplay> {
 public:
  static constexpr const char* NAME = "LogPlayDataDispatcherMsg";
  using PointerMsg<TimedReplay>::PointerMsg;
};

/// The names that the sensor system log gives them.
using SysLogPlayerMsg = LogPlayerMsg;
using DetachSysLogPlayListenerMsg = DetachLogPlayListenerMsg;
using SysLogPathMsg = LogPathMsg;
using SysLogPlayDataDispatcherMsg = LogPlayDataDispatcherMsg;

}  // namespace nfw
