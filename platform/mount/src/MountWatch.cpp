#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "MountService.h"
#include "SeamState.h"
#include "ZTSMountHost.h"

namespace mounthost {

namespace {

// How soon it is seen that a device was pulled out while it was mounted.
const int CHECK_MS = 1000;
// How soon a listener that could not take an event is told again.
const int TELL_AGAIN_MS = 200;

class Descriptor {
 public:
  explicit Descriptor(int nValue) : mValue(nValue) {}
  ~Descriptor() {
    if (mValue >= 0) ::close(mValue);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return mValue; }

 private:
  const int mValue;
};

/// The thread that reads the table whenever the kernel says that it has changed.
class Watch : private mountservice::Greeter {
 public:
  explicit Watch(const WatchOptions& nOptions)
      : mTable(::open(nOptions.mpMountTable, O_RDONLY | O_CLOEXEC)),
        mWake(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
        mSource(nOptions) {}
  ~Watch() override { stop(); }

  bool start() {
    if (mTable.get() < 0 || mWake.get() < 0) return false;
    if (seams::fails(seams::THREAD_START)) return false;
    mThread = std::thread([this] { run(); });
    return true;
  }

 private:
  void stop() {
    if (!mThread.joinable()) return;
    {
      const std::lock_guard<std::mutex> lLock(mMutex);
      mIsStopping = true;
    }
    wake();
    mThread.join();
  }

  void greet(ZTSMountListener* npListener) override {
    {
      const std::lock_guard<std::mutex> lLock(mMutex);
      mNewListeners.push_back(npListener);
    }
    wake();
  }

  void wake() const {
    const uint64_t lOne = 1;
    while (::write(mWake.get(), &lOne, sizeof(lOne)) < 0 && errno == EINTR) {
    }
  }

  void run() {
    pthread_setname_np(pthread_self(), "ZTSMount");
    mountservice::setGreeter(this);  // from here on no listener misses what is mounted; one may be told twice
    feedReady();
    readTable();
    while (waitForChange()) {
    }
    mountservice::setGreeter(nullptr);
  }

  /// False when the watch is to end.
  bool waitForChange() {
    pollfd lFiles[] = {{mTable.get(), POLLPRI, 0}, {mWake.get(), POLLIN, 0}};
    const int lTimeoutMs = !tellUndelivered() ? TELL_AGAIN_MS : mSource.hasDevices() ? CHECK_MS : -1;
    const int lReady = ::poll(lFiles, 2, lTimeoutMs);
    if (lReady == 0) mSource.checkDevices();
    if (lReady <= 0) return lReady == 0 || errno == EINTR;
    if (lFiles[0].revents != 0) readTable();
    return lFiles[1].revents == 0 || onWake();
  }

  bool onWake() {
    uint64_t lCount = 0;
    const ssize_t lSize = ::read(mWake.get(), &lCount, sizeof(lCount));
    static_cast<void>(lSize);  // it was woken, that is all
    std::vector<ZTSMountListener*> lListeners;
    {
      const std::lock_guard<std::mutex> lLock(mMutex);
      if (mIsStopping) return false;
      lListeners.swap(mNewListeners);
    }
    for (const ZTSMountListener* lpListener : lListeners) {
      mountservice::tellReady(lpListener);
      mSource.tellAll(lpListener);
    }
    return true;
  }

  // A change while it is read makes the next wait return at once.
  void readTable() {
    std::string lTable;
    char lPart[4096];
    if (::lseek(mTable.get(), 0, SEEK_SET) != 0) return;
    for (ssize_t lSize = 1; lSize != 0;) {
      lSize = ::read(mTable.get(), lPart, sizeof(lPart));
      if (lSize < 0 && errno != EINTR) return;
      if (lSize > 0) lTable.append(lPart, static_cast<size_t>(lSize));
    }
    mSource.update(lTable);
  }

  const Descriptor mTable;
  const Descriptor mWake;
  MountTableSource mSource;  // on the watch's thread only
  std::mutex mMutex;
  std::vector<ZTSMountListener*> mNewListeners;  // guarded by mMutex, as the next
  bool mIsStopping = false;
  std::thread mThread;
};

std::mutex gWatchMutex;
Watch* gpWatch = nullptr;  // a process that ends without stopping it leaves it alone

}  // namespace

bool startWatching(const WatchOptions& nOptions) {
  const std::lock_guard<std::mutex> lLock(gWatchMutex);
  if (gpWatch != nullptr) return false;
  try {
    std::unique_ptr<Watch> lpWatch(new Watch(nOptions));
    if (lpWatch->start()) gpWatch = lpWatch.release();
  } catch (const std::exception&) {  // no thread, or no memory
  }
  return gpWatch != nullptr;
}

void stopWatching() {
  const std::lock_guard<std::mutex> lLock(gWatchMutex);
  delete gpWatch;
  gpWatch = nullptr;
}

}  // namespace mounthost
