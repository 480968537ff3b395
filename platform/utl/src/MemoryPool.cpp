#include "utl/MemoryPool.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <new>

namespace utl {

namespace {

const unsigned long long ALIGNMENT = alignof(std::max_align_t);

}  // namespace

// One allocation. A block that was never out has cost no page of memory yet; those that came back form a chain through
// their own first bytes.
struct MemoryPool::State {
  struct Returned {
    Returned* mpNext;
  };

  State(unsigned int nBlockSize, unsigned int nBlockNum) {
    const unsigned long long lSize = nBlockSize > 0 ? nBlockSize : 1;
    const unsigned long long lStride = (lSize + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
    if (nBlockNum == 0 || lStride > static_cast<unsigned long long>(PTRDIFF_MAX) / nBlockNum) return;
    mStride = static_cast<std::size_t>(lStride);
    mpMemory.reset(new (std::nothrow) unsigned char[mStride * nBlockNum]);
    mFreshNum = mpMemory != nullptr ? nBlockNum : 0;
    mpFresh = mpMemory.get();
  }

  std::unique_ptr<unsigned char[]> mpMemory;
  std::size_t mStride = 0;

  std::mutex mMutex;  // guards what follows
  unsigned int mFreshNum = 0;
  unsigned char* mpFresh = nullptr;
  Returned* mpReturned = nullptr;
};

MemoryPool::MemoryPool(const char* /*npName*/, unsigned int nBlockSize, unsigned int nBlockNum)
    : mpState(new State(nBlockSize, nBlockNum)) {}
MemoryPool::~MemoryPool() = default;

void* MemoryPool::alloc() {
  std::lock_guard<std::mutex> lLock(mpState->mMutex);
  if (State::Returned* const lpBlock = mpState->mpReturned) {
    mpState->mpReturned = lpBlock->mpNext;
    return lpBlock;
  }
  if (mpState->mFreshNum == 0) return nullptr;
  --mpState->mFreshNum;
  void* const lpBlock = mpState->mpFresh;
  mpState->mpFresh += mpState->mStride;
  return lpBlock;
}

void MemoryPool::free(void* npBlock) {
  if (npBlock == nullptr) return;
  std::lock_guard<std::mutex> lLock(mpState->mMutex);
  mpState->mpReturned = new (npBlock) State::Returned{mpState->mpReturned};
}

}  // namespace utl
