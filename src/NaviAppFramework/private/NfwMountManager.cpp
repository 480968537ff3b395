#include "NfwMountManager.h"

#include "ListenerTable.h"
#include "MountDeviceInfo.h"
#include "MountDeviceList.h"
#include "MountMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwOperationControl.h"
#include "NfwThreadMsgProfilerManager.h"
#include "OneInstance.h"
#include "ServiceThread.h"
#include "Watched.h"

namespace nfw {
namespace {

const unsigned int QUEUE_LENGTH = 64;

const ThreadMsgProfile<MountRequestMsg, MountNotifyMsg, SdkMountInfoMsg> gProfile(THREAD_MSG_MOUNT_MANAGER);

unsigned int maxMsgDataSize() {
  ThreadMsgProfilerManager::profiling(THREAD_MSG_MOUNT_MANAGER);
  return ThreadMsgProfilerManager::getMaxMsgDataSize(THREAD_MSG_MOUNT_MANAGER);
}

OneInstance<MountManager>& instance() {
  static OneInstance<MountManager>* const lpInstance = new OneInstance<MountManager>("MountManager_Instantiation");
  return *lpInstance;
}

}  // namespace

unsigned int MountManager::mMaxListenerNum = 0;

void MountManager::initializeMaxListenerNum(unsigned int nValue) { mMaxListenerNum = nValue; }

MountManager* MountManager::get() {
  return instance().get([] { return new MountManager(mMaxListenerNum); });
}

void MountManager::destroy() { instance().destroy(); }

MountManager::MountManager(unsigned int nMaxListenerNum)
    : mpListeners(new ListenerList<MountEventListener>(nMaxListenerNum, false)),
      mpMount(ZTSMount::GetInstance()),
      mpThread(new utl::MsgDrivenThread(maxMsgDataSize(), QUEUE_LENGTH, "nfw::MountManager_Thread", 0)),
      mpThreadEnd(new ServiceThreadEnd),
      mpDevices(new MountDeviceList),
      mpControl(new OperationControl) {}

MountManager::~MountManager() = default;

bool MountManager::end() {
  if (mIsStarted) shutdown();
  if (mpThreadEnd->isOver(*mpThread)) return true;
  mpListeners->mute();
  return false;
}

bool MountManager::initialize() {
  if (!mpControl->start()) return false;
  const AutoCompleteOperation lOperation(*mpControl);
  {
    const WatchedLock lLock(mSync);
    if (mIsStarted) return true;
    if (!startThread(*mpThread, this)) return false;
    mIsStarted = true;
  }
  watched([this] { return mpMount->addListener(this); });
  return true;
}

void MountManager::shutdown() {
  mpControl->prohibit();
  watched([this] { return mpMount->removeListener(this); });
  mpThreadEnd->stop(*mpThread);
  mIsStarted = false;
  unsigned int lCount = 0;
  {
    const WatchedLock lLock(mSync);
    lCount = mpListeners->size();
  }
  if (lCount == 0) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "MountManager::shutdown(): MountEventListener remain: Count=%u", lCount);
}

bool MountManager::isOwnThread() const { return mpThread->getId() == utl::Thread::getCurrentId(); }

bool MountManager::request(int nMsgId, MountEventListener* npListener, bool* npResult) {
  MountRequestMsg lMsg(nMsgId);
  lMsg.mpListener = npListener;
  lMsg.mpResult = npResult;
  return mpThread->sendMsgInterrupt(lMsg);
}

bool MountManager::attachListener(nfw::MountEventListener* npListener) {
  if (isOwnThread()) return attachListenerInternal(npListener);
  bool lResult = false;
  if (watched([&] { return request(MOUNT_ATTACH_LISTENER, npListener, &lResult); })) return lResult;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::attachListener(): Can't send thread");
  return false;
}

bool MountManager::detachListener(nfw::MountEventListener* npListener) {
  if (isOwnThread()) return detachListenerInternal(npListener);
  bool lResult = false;
  if (watched([&] { return request(MOUNT_DETACH_LISTENER, npListener, &lResult); })) return lResult;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::detachListener(): Can't send thread");
  return false;
}

bool MountManager::attachListenerInternal(MountEventListener* npListener) {
  if (npListener == nullptr) return true;
  {
    const WatchedLock lLock(mSync);
    const unsigned int lCount = mpListeners->size();
    if (!mpListeners->attach(npListener)) return false;
    if (mpListeners->size() == lCount) return true;
  }
  notifyAllDevices(npListener);
  return true;
}

bool MountManager::detachListenerInternal(MountEventListener* npListener) {
  {
    const WatchedLock lLock(mSync);
    mpListeners->detach(npListener);
  }
  MountListenerJudgement lJudgement(npListener);
  watched([&] { return mpThread->eraseMsgInternal(&lJudgement); });
  return true;
}

void MountManager::notifyAllDevices(MountEventListener* npListener) {
  DeviceInfo lDevice;
  for (unsigned int i = 0; mpDevices->copyAt(i, &lDevice); ++i) {
    const MountNotifyMsg lMsg(npListener, lDevice);
    if (watched([&] { return mpThread->postMsg(lMsg); })) continue;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::attachListenerInternal(): Can't post thread");
  }
}

int MountManager::getDeviceStatus(int nDeviceId) {
  DeviceInfo lInfo;
  return getDeviceInfo(nDeviceId, &lInfo) ? lInfo.mDeviceStatus : MOUNT_STATUS_UNCLEAR;
}

bool MountManager::getDeviceInfo(int nDeviceId, nfw::MountManager::DeviceInfo* npInfo) {
  return npInfo != nullptr && nDeviceId >= 0 && mpDevices->copy(nDeviceId, npInfo);
}

int MountManager::getExternalDbStatus() {
  ZTSMountDef::ST_MNT_MOUNT_INFO lInfo{};
  const int lResult = watched([&] { return mpMount->getDeviceInfo(SDK_TYPE_EXTERNAL_DATABASE, &lInfo); });
  if (lResult == SDK_NOT_CONNECTED) return MOUNT_STATUS_DISCONNECTED;
  const bool lIsMounted = lInfo.type == SDK_TYPE_EXTERNAL_DATABASE && lInfo.event == SDK_EVENT_MOUNTED;
  return lResult == 0 && lIsMounted ? MOUNT_STATUS_MOUNTED : 0;
}

void MountManager::onNotifyReady() {
  if (watched([this] { return mpThread->postMsg(MOUNT_SDK_READY); })) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::onNotifyReady(): Can't post thread");
}

void MountManager::onNotifyDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo) {
  const SdkMountInfoMsg lMsg(nInfo);
  const ZTSMountDef::ST_MNT_MOUNT_INFO& lInfo = lMsg.mInfo;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "MountManager::onNotifyDeviceInfo(): Type=%d Port=%d Event=%d Drive=%s Path=%s",
         lInfo.type, lInfo.port, lInfo.event, lInfo.drive, lInfo.path);
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO,
         "                                    Manufacturer=%s ProductName=%s SerialNum=%s VenderID=%u ProductID=%u",
         lInfo.manufacturer, lInfo.productName, lInfo.serialNum, lInfo.vendorId, lInfo.productId);
  if (watched([&] { return mpThread->postMsg(lMsg); })) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::onNotifyDeviceInfo(): Can't post thread");
}

void MountManager::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<MountManager> ROUTES[] = {
      {MOUNT_ATTACH_LISTENER, &MountManager::onAttachListener},
      {MOUNT_DETACH_LISTENER, &MountManager::onDetachListener},
      {MOUNT_NOTIFY_LISTENER, &MountManager::onNotifyListener},
      {MOUNT_SDK_READY, &MountManager::onSdkNotifyReady},
      {MOUNT_SDK_DEVICE_INFO, &MountManager::onSdkNotifyDeviceInfo},
  };
  routeMsg(*this, ROUTES, nMsg, "MountManager");
}

void MountManager::onAttachListener(utl::ThreadRawMsg& nMsg) {
  MountRequestMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) *lMsg.mpResult = attachListenerInternal(lMsg.mpListener);
}

void MountManager::onDetachListener(utl::ThreadRawMsg& nMsg) {
  MountRequestMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) *lMsg.mpResult = detachListenerInternal(lMsg.mpListener);
}

void MountManager::onNotifyListener(utl::ThreadRawMsg& nMsg) {
  MountNotifyMsg lMsg;
  if (mIsStarted && lMsg.restoreFrom(nMsg)) lMsg.mpListener->notifyMountEvent(lMsg.mEvent);
}

void MountManager::onSdkNotifyReady(utl::ThreadRawMsg& /*nMsg*/) {}

void MountManager::onSdkNotifyDeviceInfo(utl::ThreadRawMsg& nMsg) {
  SdkMountInfoMsg lMsg;
  DeviceInfo lInfo;
  if (!mIsStarted || !lMsg.restoreFrom(nMsg) || !lInfo.setSdkInfo(lMsg.mInfo)) return;
  if (lInfo.mDeviceType == MOUNT_DEVICE_UNKNOWN) return;
  if (lInfo.mDeviceStatus == MOUNT_STATUS_UNCLEAR) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "MountManager::onSdkNotifyDeviceInfo(): DeviceStatus is unclear: DeviceType=%d", lInfo.mDeviceType);
    return;
  }
  if (!updateDeviceInfoList(&lInfo)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "MountManager::onSdkNotifyDeviceInfo(): Can't update device info list");
    return;
  }
  eraseNotifications(lInfo.mDeviceId);
  const MountEventMsg lEvent(lInfo);
  mpListeners->forEach([&lEvent](MountEventListener& nListener) { nListener.notifyMountEvent(lEvent); });
}

bool MountManager::updateDeviceInfoList(DeviceInfo* npInfo) {
  if (mpDevices->replace(npInfo)) return true;
  if (mpDevices->size() >= MountDeviceList::DEFAULT_DEVICE_NUM) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "NfwMountManager.cpp::updateDeviceInfoList(): DEFAULT_DEVICE_NUM over");
  }
  return mpDevices->add(npInfo);
}

// A listener that has just been attached may still have an older state of the device before it: it gets the event
// instead, as the last word.
void MountManager::eraseNotifications(int nDeviceId) {
  MountDeviceJudgement lJudgement(nDeviceId);
  watched([&] { return mpThread->eraseMsgInternal(&lJudgement); });
}

}  // namespace nfw
