#include "SyncWait.h"

namespace utl {

bool SyncWait::await() {
  int lWord = PENDING;
  if (mWord->compare_exchange_strong(lWord, SLEEPING, std::memory_order_acquire)) lWord = SLEEPING;
  while (lWord == SLEEPING) {
    mWord.wait(SLEEPING);
    lWord = mWord->load(std::memory_order_acquire);
  }
  return lWord == HANDLED;
}

void SyncWait::finish(Outcome nOutcome) {
  std::atomic<int>* const lpWord = mWord.word();
  if (lpWord->exchange(nOutcome, std::memory_order_release) == SLEEPING) Futex::wake(lpWord, 1);
}

}  // namespace utl
