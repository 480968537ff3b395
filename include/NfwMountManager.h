/// @file
/// Storage-device mount events.
#pragma once

#include <atomic>
#include <memory>

#include "NfwExport.h"
#include "NfwMountEventListener.h"
#include "NfwMountEventMsg.h"
#include "NfwThreadSafety.h"
#include "ZTSMount.h"
#include "ZTSync.h"
#include "utl/MsgDrivenThread.h"

namespace nfw {

template <class Listener>
class ListenerList;
class MountDeviceList;
template <class T>
class OneInstance;
class OperationControl;
class ServiceThreadEnd;

/// The process-wide list of storage devices, kept from what the mount SDK tells, and its listeners.
///
/// @code
/// nfw::MountManager* const lpManager = nfw::MountManager::get();  // after initializeNaviAppFramework
/// lpManager->initialize();
/// lpManager->attachListener(&lListener);   // -> lListener.notifyMountEvent() for each known device, then as they
/// change
/// ...
/// lpManager->detachListener(&lListener);
/// lpManager->shutdown();
/// nfw::MountManager::destroy();
/// @endcode
///
/// A device is told apart by its drive and keeps its id however often it is mounted. A listener is told the newest
/// state of a device last; states in between may be left out for one that has just been attached.
///
/// Any thread may call every operation; shutdown() and destroy() not from a listener. Listeners are called on the
/// manager's thread, last attached first.
class NFW_API MountManager : public ZTSMountListener, public utl::ThreadMsgListener {
 public:
  /// A device, as made from the SDK's record.
  struct NFW_API DeviceInfo : public MountDevice {
    /// Fills everything but the id. An unknown kind of device has the type 0.
    /// @return false, with nothing changed, for an event that the SDK does not have
    bool setSdkInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo);
  };

  /// How many listeners may be attached; before the first get().
  static void initializeMaxListenerNum(unsigned int nValue);

  static MountManager* get();  ///< creates it on first use
  /// After shutdown(); without it, that is done first. A manager whose thread did not end, because a listener is still
  /// in its call, is left behind instead of deleted, without another wait: that call may return into it, nobody is
  /// called any more, and the next get() makes a new one.
  static void destroy();

  ~MountManager() override;
  MountManager(const MountManager&) = delete;
  MountManager& operator=(const MountManager&) = delete;

  /// Starts the manager's thread and listens to the SDK. True also when that was done before.
  /// @return false when the thread cannot be started, and after shutdown()
  bool initialize() NFW_EXCLUDES(mSync);

  /// Stops listening; what was told before is still delivered. Returns when the thread has ended, or
  /// after 30000 ms, with a line, when a listener is in its call for so long. It is final.
  void shutdown() NFW_EXCLUDES(mSync);

  /// Returns when it is done; not to be called with a lock held that a listener takes. Null and a listener that is
  /// attached already count as success.
  /// @return false when there are as many listeners as may be, and while the manager does not run
  bool attachListener(nfw::MountEventListener* npListener) NFW_EXCLUDES(mSync);

  /// As attachListener(). Afterwards the listener is not called any more. Null and unknown ones count as success.
  /// @return false while the manager does not run
  bool detachListener(nfw::MountEventListener* npListener) NFW_EXCLUDES(mSync);

  /// @return the MountStatus, 0 for an unknown id
  int getDeviceStatus(int nDeviceId);

  /// @return false, with nothing stored, for null and for an unknown id
  bool getDeviceInfo(int nDeviceId, nfw::MountManager::DeviceInfo* npInfo);

  /// Asks the SDK for the medium with a database, whatever has been told.
  /// @return MOUNT_STATUS_MOUNTED, MOUNT_STATUS_DISCONNECTED, or 0 for anything else
  int getExternalDbStatus();

  /// For the SDK, on its thread.
  void onNotifyReady() override;
  void onNotifyDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo) override;

  /// For the manager's thread.
  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

  static unsigned int mMaxListenerNum;

 private:
  explicit MountManager(unsigned int nMaxListenerNum);
  friend class OneInstance<MountManager>;
  bool end();

  bool isOwnThread() const;
  bool request(int nMsgId, MountEventListener* npListener, bool* npResult);
  bool attachListenerInternal(MountEventListener* npListener) NFW_EXCLUDES(mSync);
  bool detachListenerInternal(MountEventListener* npListener) NFW_EXCLUDES(mSync);
  void notifyAllDevices(MountEventListener* npListener);
  bool updateDeviceInfoList(DeviceInfo* npInfo);
  void eraseNotifications(int nDeviceId);

  void onAttachListener(utl::ThreadRawMsg& nMsg);
  void onDetachListener(utl::ThreadRawMsg& nMsg);
  void onNotifyListener(utl::ThreadRawMsg& nMsg);
  void onSdkNotifyReady(utl::ThreadRawMsg& nMsg);
  void onSdkNotifyDeviceInfo(utl::ThreadRawMsg& nMsg);

  const std::unique_ptr<ListenerList<MountEventListener>> mpListeners;  // changed and walked on the manager's thread
  ZTSMount* const mpMount;
  const std::unique_ptr<utl::MsgDrivenThread> mpThread;
  const std::unique_ptr<ServiceThreadEnd> mpThreadEnd;
  std::atomic<bool> mIsStarted{false};
  const std::unique_ptr<MountDeviceList> mpDevices;   // with a lock of its own; changed on the manager's thread
  const std::unique_ptr<OperationControl> mpControl;  // of initialize()
  ZTSync mSync{"nfw::MountManager"};
};

}  // namespace nfw
