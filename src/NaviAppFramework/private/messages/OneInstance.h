// The one object of a service class.
#pragma once

#include <atomic>

#include "NfwOperationControl.h"
#include "NfwThreadSafety.h"
#include "Watched.h"
#include "ZTSync.h"
#include "utl/Array.h"

namespace nfw {

/// Kept in a function-local static that is never destroyed, since threads may ask while the process ends:
/// `static OneInstance<Logger>* const lpInstance = new OneInstance<Logger>("nfw::Logger_Instantiation");`
///
/// T has `bool end()`, which does what its shutdown does where that was left out, and is false when a thread of the
/// object has outlasted it all the same.
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
  /// Who comes while there is none does not hold it up.
  template <class Use>
  void use(Use nUse) {
    if (mpTheObject.load() == nullptr || !mUses.start()) return;
    const AutoCompleteOperation lUse(mUses);
    if (T* const lpObject = mpTheObject.load()) nUse(*lpObject);
  }

  /// Ends the object when the last use() of it is over, and deletes it. One whose thread is still in a callback cannot
  /// go: it is left behind whole for that thread, and forgotten here.
  void destroy() NFW_EXCLUDES(mInstantiationSyncObject) {
    const WatchedLock lLock(mInstantiationSyncObject);
    T* const lpObject = mpTheObject.exchange(nullptr);
    if (lpObject == nullptr) return;
    mUses.prohibit();
    mUses.permit();
    if (lpObject->end()) {
      delete lpObject;
    } else {
      mLeftBehind.add(lpObject);
    }
  }

 private:
  ZTSync mInstantiationSyncObject;
  std::atomic<T*> mpTheObject{nullptr};
  OperationControl mUses;
  utl::Array<T*> mLeftBehind NFW_GUARDED_BY(mInstantiationSyncObject){1, true};  // for leak checkers alone
};

}  // namespace nfw
