// The listeners of a service SDK.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

#include "utl/Array.h"

/// The registrations of one kind of listener, in the order in which they came. A walk calls out without a lock;
/// listeners come and go meanwhile, and a listener that is removed is not called any more once `remove` has returned,
/// unless one of its own callbacks removes it. One copy of the code: SdkListeners casts.
class SdkListenerTable {
 public:
  /// True as well when the listener is registered for this key already. False for null and without memory.
  bool add(void* npListener, int nKey);
  /// Ends every registration of the listener. False when there is none.
  bool remove(void* npListener);
  bool has(int nKey);  ///< a listener for this key

  /// One round over the listeners of a key that are registered at its start, on the stack of the calling thread.
  class Walk {
   public:
    Walk(SdkListenerTable& nTable, int nKey);
    ~Walk();
    Walk(const Walk&) = delete;
    Walk& operator=(const Walk&) = delete;

    void* next();  ///< null at the end

   private:
    friend class SdkListenerTable;

    SdkListenerTable& mTable;
    const int mKey;
    const std::thread::id mThread = std::this_thread::get_id();
    unsigned long long mLimit;       // registrations from this one on came later
    unsigned long long mNumber = 0;  // the last registration called
    const void* mpInside = nullptr;  // the listener that is being called
    Walk* mpNext;                    // the chain of walks under way
  };

 private:
  struct Entry {
    void* mpListener = nullptr;
    int mKey = 0;
    unsigned long long mNumber = 0;
  };

  bool isInsideLocked(const void* npListener, unsigned long long nLimit) const;
  bool isOwnCallbackLocked(const void* npListener) const;

  std::mutex mMutex;  // guards what follows and the members of the walks
  std::condition_variable mHasLeft;
  utl::Array<Entry> mEntries{8, true};
  unsigned long long mNextNumber = 1;
  Walk* mpWalks = nullptr;
};

template <class L>
class SdkListeners {
 public:
  bool add(L* npListener, int nKey = 0) { return mTable.add(npListener, nKey); }
  bool remove(L* npListener) { return mTable.remove(npListener); }
  bool has(int nKey = 0) { return mTable.has(nKey); }

  template <class Call>
  void each(int nKey, Call nCall) {
    SdkListenerTable::Walk lWalk(mTable, nKey);
    while (void* const lpListener = lWalk.next()) nCall(*static_cast<L*>(lpListener));
  }

 private:
  SdkListenerTable mTable;
};
