// The messages of the mount manager's thread, and how queued ones are chosen.
#pragma once

#include "FieldMsg.h"
#include "MountDeviceInfo.h"
#include "MountFields.h"
#include "NfwMountEventListener.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

const int MOUNT_ATTACH_LISTENER = ownMsgId(0x02);
const int MOUNT_DETACH_LISTENER = ownMsgId(0x03);
const int MOUNT_NOTIFY_LISTENER = ownMsgId(0x04);
const int MOUNT_SDK_READY = ownMsgId(0x05);
const int MOUNT_SDK_DEVICE_INFO = ownMsgId(0x06);

/// Of a caller that waits, on whose stack the result is.
class MountRequestMsg : public FieldMsg<MountRequestMsg> {
 public:
  static constexpr const char* NAME = "MountRequestMsg";

  explicit MountRequestMsg(int nMsgId = RESTORE_MSG_ID) : FieldMsg(nMsgId) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mpListener) && nVisit(nSelf.mpResult);
  }

  MountEventListener* mpListener = nullptr;
  bool* mpResult = nullptr;
};

/// Whom a queued notification is for, and of which device: what it begins with, and what judgements read of it.
class MountNotifyHeadMsg : public FieldMsg<MountNotifyHeadMsg> {
 public:
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mpListener) && nVisit(nSelf.mDeviceId);
  }

  MountEventListener* mpListener = nullptr;
  int mDeviceId = -1;
};

class MountNotifyMsg : public FieldMsg<MountNotifyMsg> {
 public:
  static constexpr const char* NAME = "MountNotifyMsg";

  MountNotifyMsg() = default;
  MountNotifyMsg(MountEventListener* npListener, const MountDevice& nDevice)
      : FieldMsg(MOUNT_NOTIFY_LISTENER), mpListener(npListener), mEvent(nDevice) {}
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mpListener) && eachMountField(nSelf.mEvent, nVisit);
  }

  MountEventListener* mpListener = nullptr;
  MountEventMsg mEvent;
};

class SdkMountInfoMsg : public FieldMsg<SdkMountInfoMsg> {
 public:
  static constexpr const char* NAME = "SdkMountInfoMsg";

  SdkMountInfoMsg() = default;
  /// Every text is terminated in the copy.
  explicit SdkMountInfoMsg(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo)
      : FieldMsg(MOUNT_SDK_DEVICE_INFO), mInfo(nInfo) {
    copyCut(mInfo.drive, nInfo.drive);
    copyCut(mInfo.path, nInfo.path);
    copyCut(mInfo.manufacturer, nInfo.manufacturer);
    copyCut(mInfo.productName, nInfo.productName);
    copyCut(mInfo.serialNum, nInfo.serialNum);
  }
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return eachSdkMountField(nSelf.mInfo, nVisit);
  }

  ZTSMountDef::ST_MNT_MOUNT_INFO mInfo{};
};

/// Chooses the queued notifications of one listener.
class MountListenerJudgement : public utl::MsgDrivenThread::MsgJudgement {
 public:
  explicit MountListenerJudgement(const MountEventListener* npListener) : mpListener(npListener) {}
  bool judge(utl::ThreadRawMsg& nMsg) override {
    int lMsgId = 0;
    PointerMsg<MountEventListener> lMsg;
    return nMsg.getMsgId(&lMsgId) && lMsgId == MOUNT_NOTIFY_LISTENER && lMsg.restoreFrom(nMsg) &&
           lMsg.mpObject == mpListener;
  }

 private:
  const MountEventListener* const mpListener;
};

/// Chooses the queued notifications of one device.
class MountDeviceJudgement : public utl::MsgDrivenThread::MsgJudgement {
 public:
  explicit MountDeviceJudgement(int nDeviceId) : mDeviceId(nDeviceId) {}
  bool judge(utl::ThreadRawMsg& nMsg) override {
    int lMsgId = 0;
    MountNotifyHeadMsg lMsg;
    return nMsg.getMsgId(&lMsgId) && lMsgId == MOUNT_NOTIFY_LISTENER && lMsg.restoreFrom(nMsg) &&
           lMsg.mDeviceId == mDeviceId;
  }

 private:
  const int mDeviceId;
};

}  // namespace nfw
