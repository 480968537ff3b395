/// @file
/// How the host application feeds the stand-in of the mount SDK. The unit's own SDK has no such header: the framework
/// never includes it.
#pragma once

#include <memory>
#include <string>

#include "ZTSMount.h"
#include "ZTSMountDef.h"

/// The feeds call the listeners one after the other on the calling thread, without a lock held. Any thread may call.
namespace mounthost {

void feedReady();

/// Keeps the record as what getDeviceInfo tells of its type, with result 0, then hands it to the listeners.
void feedDeviceInfo(ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo);

/// A listener whose queue is full loses what it is told. That is kept, of each drive the newest, and told again in the
/// order of its events by this, by every feed, and by a watch five times a second. True when all is told.
bool tellUndelivered();

/// What getDeviceInfo tells of a type from now on, without telling the listeners: the record is stored for the caller
/// whatever the result. 1, the result of a type that was never set, is "not connected".
void setDeviceInfo(int nSdkType, int nResult, ZTSMountDef::ST_MNT_MOUNT_INFO const& nInfo);

/// Forgets every device.
void clearDeviceInfo();

/// Where devices are looked for. README.md has the table of what is told as what.
struct WatchOptions {
  const char* mpMountTable = "/proc/self/mountinfo";
  const char* mpSysRoot = "/sys";
  const char* mpMediaDirectory = "/media";                  ///< right below it, memory and images of devices are sticks
  const char* mpDatabasePoint = "/mnt/database";            ///< where the unit's database partition is mounted
  const char* mpExternalDatabasePoint = "/mnt/externaldb";  ///< where a medium with a database is mounted
  bool (*mpIsReadable)(const char* npPoint) = nullptr;      ///< null: reads the directory; false is a read error
  unsigned int mAnswerMs = 3000;  ///< a medium that has not answered by then is told as unreadable until it does
};

/// Tells the listeners how each mount table differs from the one before: what a watch does with the kernel's table, and
/// a test with tables of its own. On the calling thread; one thread at a time uses it.
class MountTableSource {
 public:
  explicit MountTableSource(const WatchOptions& nOptions = WatchOptions());
  ~MountTableSource();
  MountTableSource(const MountTableSource&) = delete;
  MountTableSource& operator=(const MountTableSource&) = delete;

  void update(const std::string& nTable);
  /// Looks whether known devices were pulled out, or answer at last: that alone changes no table.
  void checkDevices();
  bool hasDevices() const;  ///< is there one that could be pulled out, or that has not answered yet?
  /// Tells one listener of the devices as they were told last.
  void tellAll(const ZTSMountListener* npListener);

 private:
  struct State;
  std::unique_ptr<State> mpState;
};

/// Watches the kernel's mount table on a thread of its own, which first tells that the SDK is ready and what is
/// mounted, also to each listener that is added later. Needs no privilege. False when it runs already, the table
/// cannot be opened, or the system gives no thread or memory.
bool startWatching(const WatchOptions& nOptions = WatchOptions());

/// Returns when the thread has ended: a medium that does not answer holds it up for WatchOptions::mAnswerMs at most.
/// Not from a callback.
void stopWatching();

}  // namespace mounthost
