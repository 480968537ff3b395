// The messages of the playing services, which the data logger and the sensor system log have alike.
#pragma once

#include "FieldMsg.h"
#include "LogFilePath.h"

namespace nfw {

class TimedReplay;

/// Something to be attached or detached. A request to detach may be posted: it tells the last attachment that it means,
/// and does nothing to a later one.
template <class T>
class AttachmentMsg : public FieldMsg<AttachmentMsg<T>> {
 public:
  static constexpr const char* NAME = "AttachmentMsg";
  explicit AttachmentMsg(int nMsgId = RESTORE_MSG_ID, T* npObject = nullptr, unsigned int nLastNumber = 0)
      : FieldMsg<AttachmentMsg<T>>(nMsgId), mpObject(npObject), mLastNumber(nLastNumber) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mpObject) && nVisit(nSelf.mLastNumber);
  }

  T* mpObject;
  unsigned int mLastNumber;
};

/// A player.
class LogPlayerMsg : public AttachmentMsg<void> {
 public:
  static constexpr const char* NAME = "LogPlayerMsg";
  using AttachmentMsg<void>::AttachmentMsg;
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
class DetachLogPlayListenerMsg : public AttachmentMsg<void> {
 public:
  static constexpr const char* NAME = "DetachLogPlayListenerMsg";
  using AttachmentMsg<void>::AttachmentMsg;
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

/// A playback to be stopped. The next one may have begun when the request arrives.
class StopPlayMsg : public FieldMsg<StopPlayMsg> {
 public:
  static constexpr const char* NAME = "StopPlayMsg";
  explicit StopPlayMsg(int nMsgId = RESTORE_MSG_ID, unsigned int nPlayNumber = 0)
      : FieldMsg(nMsgId), mPlayNumber(nPlayNumber) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mPlayNumber);
  }

  unsigned int mPlayNumber;
};

/// A change to a playback under way.
class PlayControlMsg : public FieldMsg<PlayControlMsg> {
 public:
  static constexpr const char* NAME = "PlayControlMsg";
  enum Operation { PAUSE, RESUME, STEP, SET_RATE, SEEK };

  explicit PlayControlMsg(int nMsgId = RESTORE_MSG_ID, int nOperation = PAUSE, unsigned int nValue = 0,
                          unsigned int nPlayNumber = 0)
      : FieldMsg(nMsgId), mOperation(nOperation), mValue(nValue), mPlayNumber(nPlayNumber) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mOperation) && nVisit(nSelf.mValue) && nVisit(nSelf.mPlayNumber);
  }

  int mOperation;
  unsigned int mValue;  // of SET_RATE, permille; of SEEK, milliseconds
  unsigned int mPlayNumber;
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
