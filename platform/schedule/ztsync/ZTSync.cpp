// The stand-in's named lock, with its name told to the scheduler: in place of ztsync/src in this build.
#include "ZTSync.h"

#include "RecursiveMutex.h"
#include "Schedule.h"
#include "Trace.h"

ZTSync::ZTSync(const char* npName, int /*nKind*/) : mpName(npName != nullptr ? npName : "") {
  initRecursive(&mMutex);
  schedule::Trace::name(&mMutex, mpName);
}

ZTSync::~ZTSync() {
  schedule::Trace::forget(&mMutex);
  pthread_mutex_destroy(&mMutex);
}

bool ZTSync::lock() ZTS_ANNOTATION(no_thread_safety_analysis) {
  schedule::require(schedule::Trace::nameOf(&mMutex) != nullptr, "a lock is used that has gone");
  return pthread_mutex_lock(&mMutex) == 0;
}

bool ZTSync::unlock() ZTS_ANNOTATION(no_thread_safety_analysis) { return pthread_mutex_unlock(&mMutex) == 0; }
