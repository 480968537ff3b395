/// @file
/// The platform's named recursive mutex.
#pragma once

#include <pthread.h>

#if defined(__clang__)
#define ZTS_ANNOTATION(x) __attribute__((x))
#else
#define ZTS_ANNOTATION(x)
#endif

/// A recursive mutex. The name is a label for traces: two objects of one name are two locks.
/// Any thread may call; waiting has no limit.
class ZTS_ANNOTATION(capability("mutex")) ZTSync {
 public:
  explicit ZTSync(const char* npName, int nKind = 1);
  ~ZTSync();
  ZTSync(const ZTSync&) = delete;
  ZTSync& operator=(const ZTSync&) = delete;

  bool lock() ZTS_ANNOTATION(acquire_capability());
  bool unlock() ZTS_ANNOTATION(release_capability());

  const char* getName() const { return mpName; }

 private:
  const char* mpName;  // not copied: callers pass literals
  pthread_mutex_t mMutex;
};
