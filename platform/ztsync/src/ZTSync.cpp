#include "ZTSync.h"

#include "RecursiveMutex.h"

ZTSync::ZTSync(const char* npName, int /*nKind*/) : mpName(npName != nullptr ? npName : "") { initRecursive(&mMutex); }

ZTSync::~ZTSync() { pthread_mutex_destroy(&mMutex); }

// The analysis cannot see through pthread calls; the declarations carry the contract.
bool ZTSync::lock() ZTS_ANNOTATION(no_thread_safety_analysis) { return pthread_mutex_lock(&mMutex) == 0; }

bool ZTSync::unlock() ZTS_ANNOTATION(no_thread_safety_analysis) { return pthread_mutex_unlock(&mMutex) == 0; }
