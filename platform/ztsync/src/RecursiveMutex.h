// The C library's mutex that its holder may take again.
#pragma once

#include <pthread.h>

inline void initRecursive(pthread_mutex_t* npMutex) {
  pthread_mutexattr_t lAttr;
  pthread_mutexattr_init(&lAttr);
  pthread_mutexattr_settype(&lAttr, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(npMutex, &lAttr);
  pthread_mutexattr_destroy(&lAttr);
}
