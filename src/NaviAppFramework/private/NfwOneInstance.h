// The one object of a service class.
#pragma once

#include <atomic>

#include "NfwThreadSafety.h"
#include "NfwWatched.h"
#include "ZTSync.h"
#include "utl/Thread.h"

namespace nfw {

/// Kept in a function-local static that is never destroyed, since threads may ask while the process ends:
/// `static OneInstance<Logger>* const lpInstance = new OneInstance<Logger>("nfw::Logger_Instantiation");`
template <class T>
class OneInstance {
 public:
  explicit OneInstance(const char* npLockName) : mInstantiationSyncObject(npLockName) {}
  OneInstance(const OneInstance&) = delete;
  OneInstance& operator=(const OneInstance&) = delete;

  /// The object, made by `nCreate` where there is none. It stays valid until destroy().
  template <class Create>
  T* get(Create nCreate) NFW_EXCLUDES(mInstantiationSyncObject) {
    const WatchedLock lLock(mInstantiationSyncObject);
    if (mpTheObject.load() == nullptr) mpTheObject.store(nCreate());
    return mpTheObject.load();
  }

  /// Calls `nUse(object)` when there is one; the lock is not taken, so destroy() can wait for threads that come here.
  template <class Use>
  void use(Use nUse) {
    mInFlight.fetch_add(1);
    if (T* const lpObject = mpTheObject.load()) nUse(*lpObject);
    mInFlight.fetch_sub(1);
  }

  /// Deletes the object when the last use() of it is over.
  void destroy() NFW_EXCLUDES(mInstantiationSyncObject) {
    const WatchedLock lLock(mInstantiationSyncObject);
    T* const lpObject = mpTheObject.exchange(nullptr);
    while (mInFlight.load() > 0) utl::Thread::sleep(0);
    delete lpObject;
  }

 private:
  ZTSync mInstantiationSyncObject;
  std::atomic<T*> mpTheObject{nullptr};
  std::atomic<unsigned int> mInFlight{0};
};

}  // namespace nfw
