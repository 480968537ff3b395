#include "NfwThreadMsgProfilerManager.h"

#include "NfwThreadMsgSizeCalculator.h"
#include "Watched.h"

namespace nfw {
namespace {

const int KIND_NUM = 16;

/// Never destroyed: lists of other source files come and go at moments of their own.
struct Profiles {
  ZTSync mSync{"nfw::ThreadMsgProfilerManager"};
  ThreadMsgProfiler* mpFirst NFW_GUARDED_BY(mSync) = nullptr;
  unsigned int mMaxSize[KIND_NUM] NFW_GUARDED_BY(mSync) = {};

  static Profiles& get() {
    static Profiles* const lpProfiles = new Profiles;
    return *lpProfiles;
  }
};

bool isKind(int nKind) { return nKind >= 0 && nKind < KIND_NUM; }

}  // namespace

ThreadMsgProfiler::ThreadMsgProfiler(int nKind, const Sample* npSamples, unsigned int nSampleNum)
    : mKind(nKind), mpSamples(npSamples), mSampleNum(nSampleNum) {
  ThreadMsgProfilerManager::entry(this);
}

ThreadMsgProfiler::~ThreadMsgProfiler() { ThreadMsgProfilerManager::release(this); }

unsigned int ThreadMsgProfiler::getMaxMsgDataSize() const {
  unsigned int lMaxSize = 0;
  for (unsigned int i = 0; i < mSampleNum; ++i) {
    ThreadMsgSizeCalculator lCalculator;
    mpSamples[i].mpMsg->restoreFrom(lCalculator);
    if (lCalculator.getSize() > lMaxSize) lMaxSize = lCalculator.getSize();
  }
  return lMaxSize;
}

void ThreadMsgProfilerManager::entry(ThreadMsgProfiler* npProfiler) {
  Profiles& lProfiles = Profiles::get();
  const WatchedLock lLock(lProfiles.mSync);
  npProfiler->mpNext = lProfiles.mpFirst;
  lProfiles.mpFirst = npProfiler;
}

void ThreadMsgProfilerManager::release(ThreadMsgProfiler* npProfiler) {
  Profiles& lProfiles = Profiles::get();
  const WatchedLock lLock(lProfiles.mSync);
  ThreadMsgProfiler** lppLink = &lProfiles.mpFirst;
  while (*lppLink != nullptr && *lppLink != npProfiler) lppLink = &(*lppLink)->mpNext;
  if (*lppLink != nullptr) *lppLink = npProfiler->mpNext;
}

void ThreadMsgProfilerManager::profiling(int nKind) {
  if (!isKind(nKind)) return;
  Profiles& lProfiles = Profiles::get();
  const WatchedLock lLock(lProfiles.mSync);
  unsigned int lMaxSize = 0;
  for (const ThreadMsgProfiler* lpProfiler = lProfiles.mpFirst; lpProfiler != nullptr;
       lpProfiler = lpProfiler->mpNext) {
    if (lpProfiler->getKind() != nKind) continue;
    const unsigned int lSize = lpProfiler->getMaxMsgDataSize();
    if (lSize > lMaxSize) lMaxSize = lSize;
  }
  lProfiles.mMaxSize[nKind] = lMaxSize;
}

unsigned int ThreadMsgProfilerManager::getMaxMsgDataSize(int nKind) {
  if (!isKind(nKind)) return 0;
  Profiles& lProfiles = Profiles::get();
  const WatchedLock lLock(lProfiles.mSync);
  return lProfiles.mMaxSize[nKind];
}

unsigned int ThreadMsgProfilerManager::profiledSize(int nKind) {
  profiling(nKind);
  return getMaxMsgDataSize(nKind);
}

}  // namespace nfw
