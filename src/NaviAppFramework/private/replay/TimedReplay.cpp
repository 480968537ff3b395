#include "TimedReplay.h"

#include "FieldMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "RecordScout.h"
#include "ServiceThread.h"
#include "utl/ThreadManager.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const int SET_TIMER_MSG = ownMsgId(0x02);

const unsigned int PENDING_NUM = 52;
const unsigned int LATE_INTERVAL_MS = 1;
const int MAX_TRIES = 8;

thread_local TimedReplay* gDelivering = nullptr;

/// The calling thread is in the listener of a replay.
class DeliveryMark {
 public:
  explicit DeliveryMark(TimedReplay* npReplay) { gDelivering = npReplay; }
  ~DeliveryMark() { gDelivering = nullptr; }
  DeliveryMark(const DeliveryMark&) = delete;
  DeliveryMark& operator=(const DeliveryMark&) = delete;
};

}  // namespace

TimedReplay::TimedReplay(const ReplayFormat& nFormat, int nLogTypeId, const void* npListener, RecordReader* npReader,
                         unsigned int nMaxDataSize, const Here& nHere)
    : mFormat(nFormat),
      mLogTypeId(nLogTypeId),
      mpListener(npListener),
      mMaxDataSize(nMaxDataSize),
      mHere(nHere),
      mSync(nFormat.mpLockName),
      mpReader(npReader),
      mTiming(nFormat.mRule),
      mPending(PENDING_NUM, false),
      mHeld(PENDING_NUM, false) {
  nFormat.mpIdText(nLogTypeId, mIdText);
}

TimedReplay* TimedReplay::delivering() { return gDelivering; }

void TimedReplay::fail(const char* npOperation, const char* npText) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): %s: Id=%s", mFormat.mpClass, npOperation, npText, mIdText);
}

// --- start and stop, on the service's thread

bool TimedReplay::start(unsigned int nStartTick, const char* npPath) {
  return startWith([&]() NFW_REQUIRES(mSync) {
    unsigned int lFirstTime = 0;
    if (!openFile(npPath, &lFirstTime)) return false;
    mStart = Start();
    mTiming.start(nStartTick, lFirstTime);
    return true;
  });
}

bool TimedReplay::start(const Start& nStart) {
  return startWith([&]() NFW_REQUIRES(mSync) {
    const unsigned int lFile = nStart.mPlace.mFile;
    if (!mpReader->open(mLogTypeId, nStart.mpTimeline->path(lFile), mpScout, lFile)) return false;
    mStart = nStart;
    mFile = lFile;
    mpStretch = nullptr;
    if (mpReader->seek(nStart.mPlace.mPosition)) return true;
    mpReader->close();
    return false;
  });
}

// The lock is held until everything is in place: the read-ahead, which may begin as soon as it is posted, waits for it.
template <class Open>
bool TimedReplay::startWith(Open nOpen) {
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  const WatchedLock lLock(mSync, mHere.in("start"));
  if (mpThread != nullptr || !nOpen()) return false;
  if (mpPool == nullptr) mpPool = std::make_unique<utl::MemoryPool>(mFormat.mpPoolName, mMaxDataSize, PENDING_NUM);
  mIsStopping = false;
  if (mpClock != nullptr) mClockNumber = mpClock->changeNumber();
  mpThread.reset(newThread());
  if (mpThread == nullptr) {
    mpReader->close();
    return false;
  }
  mHasThread = true;
  return true;
}

bool TimedReplay::openFile(const char* npPath, unsigned int* npFirstTime) {
  if (!mpReader->open(mLogTypeId, npPath, mpScout)) return false;
  if (mpReader->getFirstLogTime(npFirstTime)) return true;
  mpReader->close();
  return false;
}

/// A running thread with the first read-ahead on its way, or null.
utl::MsgDrivenThread* TimedReplay::newThread() {
  char lName[ReplayFormat::THREAD_NAME_SIZE];
  mFormat.mpThreadName(mLogTypeId, lName);
  std::unique_ptr<utl::MsgDrivenThread> lpThread(
      new utl::MsgDrivenThread(mFormat.mpMaxMsgDataSize(), mFormat.mQueueLength, lName, PENDING_NUM));
  if (!startThread(*lpThread, this, THREAD_PRIORITY, mHere.in())) return nullptr;
  if (postSetTimer(*lpThread)) return lpThread.release();
  fail("start", "Can't post thread");
  discardThread(std::move(lpThread));
  return nullptr;
}

bool TimedReplay::postSetTimer(utl::MsgDrivenThread& nThread) const {
  return watched([&nThread] { return nThread.postMsg(SET_TIMER_MSG); }, mHere.in());
}

void TimedReplay::discardThread(std::unique_ptr<utl::MsgDrivenThread> npThread) {
  stopThread(*npThread, mHere.in());
  utl::ThreadManager::remove(npThread.get());
}

void TimedReplay::stop() {
  mIsStopping = true;
  mpReader->requestCancelNext();
  if (!watched([this] { return mControl.prohibit(); }, mHere.in())) return;
  const AutoPermitOperation lPermit(mControl);
  std::unique_ptr<utl::MsgDrivenThread> lpThread;
  {
    const WatchedLock lLock(mSync, mHere.in());
    if (mpThread == nullptr) return;
    mTiming.start(0, 0);
    mpStretch = nullptr;
    mStart = Start();
    clearLogInfoMap();
    mpReader->close();
    lpThread = std::move(mpThread);
    mHasThread = false;
  }
  discardThread(std::move(lpThread));
}

bool TimedReplay::isPlaying() const {
  if (!mControl.start()) return true;
  const AutoCompleteOperation lComplete(mControl);
  return mHasThread;
}

void TimedReplay::endDispatch() {
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  {
    const WatchedLock lLock(mSync, mHere.in());
    if (mpThread == nullptr) return;
    clearLogInfoMap();
    mpThread->eraseMsg(SET_TIMER_MSG);
    mpThread->eraseMsg(utl::TimerMsg::MSG_ID);
  }
  tellEnd();
}

void TimedReplay::clearLogInfoMap() {
  const WatchedLock lLock(mSync, mHere.in());
  for (unsigned int i = 0; i < mPending.size(); ++i) {
    if (mpThread != nullptr) mpThread->killTimer(mPending.keyAt(i), 1);
    mpPool->free(mPending.valueAt(i).mpData);
  }
  mPending.clear();
  for (unsigned int i = 0; i < mHeld.size(); ++i) mpPool->free(mHeld[i].mpData);
  mHeld.clear();
}

// --- the replay's thread

void TimedReplay::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<TimedReplay> ROUTES[] = {
      {SET_TIMER_MSG, &TimedReplay::onSetTimer},
      {utl::TimerMsg::MSG_ID, &TimedReplay::onTimer},
  };
  routeMsg(*this, ROUTES, nMsg, mFormat.mpClass);
}

void TimedReplay::onSetTimer(utl::ThreadRawMsg& /*nMsg*/) {
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  bool lIsOver = false;
  {
    const WatchedLock lLock(mSync, mHere.in());
    lIsOver = mpThread != nullptr && !readAhead();
  }
  if (lIsOver) endDispatch();
}

/// Fills the free places. False when there is nothing more to play.
bool TimedReplay::readAhead() {
  const unsigned int lFree = mPending.capacity() - mPending.size() - mHeld.size();
  RecordReader::Batch lBatch(*mpReader);
  for (unsigned int i = 0; i < lFree; ++i) {
    const Outcome lOutcome = readOne(lBatch);
    if (lOutcome == FAILED) return false;
    if (lOutcome == IS_CANCELED) return true;
    if (lOutcome == AT_END) break;
  }
  return mPending.size() + mHeld.size() > 0;
}

TimedReplay::Outcome TimedReplay::readOne(RecordReader::Batch& nBatch) {
  LogInfo lInfo;
  lInfo.mpData = mpPool->alloc();
  if (lInfo.mpData == nullptr) {
    fail("onSetTimer", "Can't create data buffer");
    return FAILED;
  }
  Outcome lOutcome = readRecord(nBatch, &lInfo);
  if (lOutcome == SCHEDULED) lOutcome = followClock() ? schedule(lInfo) : FAILED;
  if (lOutcome != SCHEDULED) mpPool->free(lInfo.mpData);
  return lOutcome;
}

TimedReplay::Outcome TimedReplay::readRecord(RecordReader::Batch& nBatch, LogInfo* npInfo) {
  RecordHeader lHeader;
  int lResult = nBatch.next(&lHeader, npInfo->mpData, mMaxDataSize);
  while (lResult == RecordReader::END_OF_FILE && openNextFile()) {
    lResult = nBatch.next(&lHeader, npInfo->mpData, mMaxDataSize);
  }
  if (lResult == RecordReader::END_OF_FILE) return AT_END;
  if (lResult == RecordReader::CANCELED) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "%s::onSetTimer(): Reader is canceled: Id=%s", mFormat.mpClass, mIdText);
    return IS_CANCELED;
  }
  if (lResult < 0) {
    fail("onSetTimer", "Can't get next record");
    return FAILED;
  }
  npInfo->mPosition = lHeader.mPosition;
  npInfo->mTime = lHeader.mTime;
  npInfo->mSize = lHeader.mSize;
  npInfo->mVersion = lHeader.mVersion;
  enterStretch(lHeader.mPosition);
  return SCHEDULED;
}

// A file that has gone since the playback was started gives no record, and the reader's line with the next one.
bool TimedReplay::openNextFile() {
  if (mStart.mpTimeline == nullptr || mFile + 1 >= mStart.mpTimeline->fileNum() || mIsStopping) return false;
  mpReader->close();
  const char* const lpPath = mStart.mpTimeline->path(++mFile);
  if (mpScout != nullptr) mpScout->enter(mFile, lpPath);
  mpReader->open(mLogTypeId, lpPath, mpScout, mFile);
  return true;
}

void TimedReplay::enterStretch(uint64_t nPosition) {
  if (mStart.mpTimeline == nullptr) return;
  const PlayTimeline::Stretch& lStretch = mStart.mpTimeline->stretchAt({mFile, nPosition});
  if (&lStretch == mpStretch) return;
  mpStretch = &lStretch;
  mTiming.start(mStart.mZeroTick + lStretch.mOffset, lStretch.mFirstTime);
}

bool TimedReplay::isBeforeStart(uint32_t nNominalTick) const {
  return mStart.mpTimeline != nullptr && static_cast<int32_t>(nNominalTick - mStart.mZeroTick - mStart.mFromOffset) < 0;
}

TimedReplay::Outcome TimedReplay::schedule(const LogInfo& nInfo) {
  const unsigned long lPosition = static_cast<unsigned long>(nInfo.mPosition);
  const uint32_t lBase = mTiming.getBase();
  uint32_t lDue = 0;
  if (!mTiming.due(nInfo.mTime, &lDue)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING,
           "%s::onSetTimer(): Log is skipped: Invalid log time: Target=%u msec Base=%u msec LogPos=%lu Id=%s",
           mFormat.mpClass, nInfo.mTime, lBase, lPosition, mIdText);
    return SKIPPED;
  }
  mTiming.scheduled(nInfo.mTime);
  if (isBeforeStart(lDue)) return SKIPPED;
  LogInfo lInfo = nInfo;
  lInfo.mNominal = lDue;
  lInfo.mNumber = mReadNumber++;
  // None overtakes what is held.
  if (mHeld.size() > 0) return mHeld.add(lInfo) ? SCHEDULED : FAILED;
  return arm(lInfo, true);
}

/// Sets the record's timer, or holds it until the clock goes on.
TimedReplay::Outcome TimedReplay::arm(const LogInfo& nInfo, bool nIsLateTold) {
  uint32_t lDue = nInfo.mNominal;
  if (mpClock != nullptr && mpClock->isControlled() &&
      !mpClock->due(nInfo.mNominal, utl::TimeCounter::getTickTime(), &lDue)) {
    return mHeld.add(nInfo) ? SCHEDULED : FAILED;
  }
  const unsigned long lPosition = static_cast<unsigned long>(nInfo.mPosition);
  unsigned int lInterval = 0;
  const int lTimerId = setTimer(lDue, nIsLateTold ? &nInfo : nullptr, &lInterval);
  if (lTimerId == -1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::onSetTimer(): Can't set timer: Interval=%u msec LogPos=%lu Id=%s",
           mFormat.mpClass, lInterval, lPosition, mIdText);
    return FAILED;
  }
  if (mPending.insert(lTimerId, nInfo)) return SCHEDULED;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "%s::onSetTimer(): Can't insert log info to map: TimerId=%u msec LogPos=%lu Id=%s", mFormat.mpClass,
         static_cast<unsigned int>(lTimerId), lPosition, mIdText);
  mpThread->killTimer(lTimerId, 1);
  return FAILED;
}

// A timer counts from its setting. When the tick has moved on since it was read, the record would come a millisecond
// late and behind one read after it: then it is set once more.
int TimedReplay::setTimer(uint32_t nDue, const LogInfo* npLate, unsigned int* npInterval) {
  for (int lTry = 0;; ++lTry) {
    const uint32_t lNow = utl::TimeCounter::getTickTime();
    *npInterval = ReplayTiming::interval(nDue, lNow);
    if (*npInterval == 0) {
      if (npLate != nullptr) logDelay(lNow - nDue, *npLate);
      *npInterval = LATE_INTERVAL_MS;
      return mpThread->setTimer(*npInterval, 1, 1);
    }
    const int lTimerId = mpThread->setTimer(*npInterval, 1, 1);
    if (lTimerId == -1 || lTry == MAX_TRIES || utl::TimeCounter::getTickTime() == lNow) return lTimerId;
    mpThread->killTimer(lTimerId, 1);
  }
}

// --- control

void TimedReplay::retime() {
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  bool lIsDone = true;
  {
    const WatchedLock lLock(mSync, mHere.in());
    if (mpThread == nullptr) return;
    lIsDone = followClock();
  }
  if (!lIsDone) endDispatch();
}

/// All timers again, when the clock has changed since: what was read under one clock and under the next would come out
/// of order. False when a timer cannot be set.
bool TimedReplay::followClock() {
  if (mpClock == nullptr || mClockNumber == mpClock->changeNumber()) return true;
  mClockNumber = mpClock->changeNumber();
  holdPending();
  return armHeld();
}

/// In the order in which they were read. An expiry that is being handled finds its record gone, or not due.
void TimedReplay::holdPending() {
  for (unsigned int i = 0; i < mPending.size(); ++i) {
    const LogInfo& lInfo = mPending.valueAt(i);
    mpThread->killTimer(mPending.keyAt(i), 1);
    unsigned int lAt = mHeld.size();
    while (lAt > 0 && static_cast<int32_t>(mHeld[lAt - 1].mNumber - lInfo.mNumber) > 0) --lAt;
    mHeld.insert(lAt, lInfo);
  }
  mPending.clear();
}

/// All of them: the clock holds again what is not due. False when a timer cannot be set.
bool TimedReplay::armHeld() {
  for (unsigned int lNum = mHeld.size(); lNum > 0; --lNum) {
    const LogInfo lInfo = mHeld[0];
    mHeld.removeAt(0);
    if (arm(lInfo, false) == SCHEDULED) continue;
    mpPool->free(lInfo.mpData);
    return false;
  }
  return true;
}

bool TimedReplay::nextHeld(uint32_t* npNominalTick) {
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  bool lIsOver = false;
  {
    const WatchedLock lLock(mSync, mHere.in());
    if (mpThread == nullptr) return false;
    if (!followClock()) lIsOver = true;
    if (!lIsOver && mHeld.size() == 0) lIsOver = !readAhead();
    if (mHeld.size() > 0) *npNominalTick = mHeld[0].mNominal;
    if (!lIsOver) return mHeld.size() > 0;
  }
  endDispatch();
  return false;
}

// --- the replay's thread

void TimedReplay::logDelay(uint32_t nDelay, const LogInfo& nInfo) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "%s::onSetTimer(): Log dispatch is delay: Delay=%u msec LogPos=%lu Id=0x%08X",
         mFormat.mpClass, nDelay, static_cast<unsigned long>(nInfo.mPosition), static_cast<unsigned int>(mLogTypeId));
}

void TimedReplay::onTimer(utl::ThreadRawMsg& nMsg) {
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  LogInfo lInfo;
  const Outcome lOutcome = takePending(nMsg, &lInfo);
  if (lOutcome == FAILED) return endDispatch();
  if (lOutcome != SCHEDULED) return;
  callListener(lInfo);
  mpPool->free(lInfo.mpData);

  const WatchedLock lLock(mSync, mHere.in());
  if (!postSetTimer(*mpThread)) fail("onTimer", "Can't post thread");
}

TimedReplay::Outcome TimedReplay::takePending(utl::ThreadRawMsg& nMsg, LogInfo* npInfo) {
  const WatchedLock lLock(mSync, mHere.in());
  utl::TimerMsg lMsg;
  if (mpThread == nullptr || !lMsg.restoreFrom(nMsg)) return SKIPPED;
  if (!followClock()) return FAILED;
  const LogInfo* const lpInfo = mPending.find(lMsg.getTimerId());
  if (isStale(lpInfo)) return SKIPPED;
  mpThread->killTimer(lMsg.getTimerId(), 1);
  if (lpInfo == nullptr) {
    // The class stands fixed in this one line: tools look for it, whichever log is played.
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "LogPlayDataDispatcher::onTimer(): Can't find log info: TimerId=%u msec Id=%s",
           static_cast<unsigned int>(lMsg.getTimerId()), mIdText);
    return SKIPPED;
  }
  *npInfo = *lpInfo;
  mPending.remove(lMsg.getTimerId());
  return SCHEDULED;
}

/// The expiry of a timer that was meanwhile replaced: the clock has changed.
bool TimedReplay::isStale(const LogInfo* npInfo) const {
  if (mpClock == nullptr || !mpClock->isControlled()) return false;
  return npInfo == nullptr || !mpClock->hasCome(npInfo->mNominal, utl::TimeCounter::getTickTime());
}

void TimedReplay::callListener(const LogInfo& nInfo) {
  if (mIsMuted || *mpIsServiceMuted) return;
  const DeliveryMark lMark(this);
  deliver(nInfo);
}

}  // namespace nfw
