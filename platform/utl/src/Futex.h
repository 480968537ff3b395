// The kernel's wait on a word of memory: what the locks of this layer are made of.
#pragma once

#include <atomic>
#include <cstdint>

namespace utl {

class Futex {
 public:
  explicit Futex(int nValue = 0) : mWord(nValue) {}
  std::atomic<int>* operator->() { return &mWord; }

  /// Sleeps while the word is `nExpected`, at most until the monotonic clock reaches `nDeadlineNs` (negative: no
  /// limit). False when the time is over. Returns early at will.
  bool wait(int nExpected, int64_t nDeadlineNs = -1);

  /// The address on which others sleep.
  std::atomic<int>* word() { return &mWord; }
  /// Wakes so many sleepers. The word itself is not touched: it may be gone already, and then nothing happens.
  static void wake(std::atomic<int>* npWord, int nNum);

 private:
  std::atomic<int> mWord;
  static_assert(sizeof(std::atomic<int>) == sizeof(int) && std::atomic<int>::is_always_lock_free);
};

}  // namespace utl
