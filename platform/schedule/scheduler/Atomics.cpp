// Each atomic operation is a point. The compiler calls these in place of its own instructions where the sources are
// compiled for the thread sanitizer; the sanitizer's own library is not linked. All are done in one order.
#include <cstdint>

#include "Freed.h"
#include "Scheduler.h"

namespace schedule {

namespace {

void atomic(const char* npOperation, const volatile void* npWord) {
  if (Scheduler* const lpScheduler = Scheduler::active()) {
    lpScheduler->point(npOperation, const_cast<const void*>(npWord));
    if (Freed::holds(npWord)) lpScheduler->fail("an object is used that has been deleted");
  }
}

}  // namespace
}  // namespace schedule

using schedule::atomic;

#define CHANGING(BITS, TYPE, NAME)                                                   \
  TYPE __tsan_atomic##BITS##_##NAME(volatile TYPE* npWord, TYPE nValue, int) {       \
    return atomic(#NAME, npWord), __atomic_##NAME(npWord, nValue, __ATOMIC_SEQ_CST); \
  }
#define COMPARING(BITS, TYPE)                                                                                     \
  TYPE __tsan_atomic##BITS##_compare_exchange_val(volatile TYPE* npWord, TYPE nExpected, TYPE nValue, int, int) { \
    atomic("compare_exchange", npWord);                                                                           \
    __atomic_compare_exchange_n(npWord, &nExpected, nValue, false, __ATOMIC_SEQ_CST, __ATOMIC_SEQ_CST);           \
    return nExpected;                                                                                             \
  }
#define ATOMICS(BITS, TYPE)                                                                   \
  TYPE __tsan_atomic##BITS##_load(const volatile TYPE* npWord, int) {                         \
    return atomic("load", npWord), __atomic_load_n(npWord, __ATOMIC_SEQ_CST);                 \
  }                                                                                           \
  void __tsan_atomic##BITS##_store(volatile TYPE* npWord, TYPE nValue, int) {                 \
    atomic("store", npWord), __atomic_store_n(npWord, nValue, __ATOMIC_SEQ_CST);              \
  }                                                                                           \
  TYPE __tsan_atomic##BITS##_exchange(volatile TYPE* npWord, TYPE nValue, int) {              \
    return atomic("exchange", npWord), __atomic_exchange_n(npWord, nValue, __ATOMIC_SEQ_CST); \
  }                                                                                           \
  CHANGING(BITS, TYPE, fetch_add)                                                             \
  CHANGING(BITS, TYPE, fetch_sub)                                                             \
  CHANGING(BITS, TYPE, fetch_and)                                                             \
  CHANGING(BITS, TYPE, fetch_or)                                                              \
  CHANGING(BITS, TYPE, fetch_xor)                                                             \
  COMPARING(BITS, TYPE)

extern "C" {

void __tsan_init() {}
void __tsan_atomic_thread_fence(int) { __atomic_thread_fence(__ATOMIC_SEQ_CST); }
void __tsan_atomic_signal_fence(int) {}
ATOMICS(8, uint8_t)
ATOMICS(16, uint16_t)
ATOMICS(32, uint32_t)
ATOMICS(64, uint64_t)

}  // extern "C"
