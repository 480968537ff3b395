#include "PlayService.h"

#include <algorithm>
#include <new>

#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogPlayer.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PlayMsgs.h"
#include "RecordScout.h"
#include "ServiceThread.h"
#include "TimedReplay.h"
#include "utl/StringUtil.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const unsigned int QUEUE_LENGTH = 64;
const unsigned int MAX_END_NUM = 4096;  // more replays than a process has threads for: a limit may mean "any number"
const unsigned int LEAD_MS = 1000;      // from the start of a playback to its first record: time to read ahead
const unsigned int SEEK_LEAD_MS = 50;   // from a seek to its first record: for the same
const unsigned int MIN_RATE = 10;
const unsigned int MAX_RATE = 100000;

// All replays may end while a player holds the thread up: the end of each has a place of its own.
unsigned int queueLength(unsigned int nMaxReplayNum) { return QUEUE_LENGTH + std::min(nMaxReplayNum, MAX_END_NUM); }

}  // namespace

/// Selects the queued end messages of one replay.
class PlayService::JudgeDispacherMsg : public utl::MsgDrivenThread::MsgJudgement {
 public:
  JudgeDispacherMsg(int nMsgId, const TimedReplay* npReplay) : mMsgId(nMsgId), mpReplay(npReplay) {}
  bool judge(utl::ThreadRawMsg& nMsg) override {
    int lMsgId = 0;
    LogPlayDataDispatcherMsg lMsg;
    return nMsg.getMsgId(&lMsgId) && lMsgId == mMsgId && lMsg.restoreFrom(nMsg) && lMsg.mpObject == mpReplay;
  }

 private:
  const int mMsgId;
  const TimedReplay* const mpReplay;
};

PlayService::Operation::Operation(PlayService& nService)
    : mControl(nService.mControl),
      mIsStarted(mControl.start()),
      mIsAdmitted(mIsStarted && nService.mState == INITIALIZED) {}

PlayService::Operation::~Operation() {
  if (mIsStarted) mControl.complete();
}

PlayService::PlayService(const PlayFormat& nFormat, unsigned int nMaxPlayerNum, unsigned int nMaxReplayNum,
                         const Here& nHere)
    : mFormat(nFormat),
      mHere(nHere),
      mThread(ThreadMsgProfilerManager::profiledSize(nFormat.mThreadMsgKind), queueLength(nMaxReplayNum),
              nFormat.mpThreadName, 0),
      mRequests(nFormat.mpClass, mThread, nHere),
      mPlayers(nMaxPlayerNum, false),
      mReplays(nMaxReplayNum, false),
      mAttachPlayerSync(nFormat.mpAttachPlayerLock),
      mAttachPlayListenerSync(nFormat.mpAttachPlayListenerLock),
      mSync(nFormat.mpPathLock) {}

PlayService::~PlayService() = default;

bool PlayService::logFailure(const char* npOperation, const char* npText) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): %s", mFormat.mpClass, npOperation, npText);
  return false;
}

// --- life

bool PlayService::startServiceThread(utl::ThreadMsgListener* npListener) {
  return startThread(mThread, npListener, THREAD_PRIORITY, mHere.in());
}

bool PlayService::closeGate() {
  if (mState.exchange(SHUT_DOWN) == SHUT_DOWN) return false;
  watched([this] { return mControl.prohibit(); }, mHere.in());
  return true;
}

// The replays are stopped behind everything queued, a start of playback included. Only posted: the thread may be in a
// player, or wait for a play listener. What it could not be told is done when it has ended: nothing else touches the
// replays then. Of a thread that did not end in time nothing is asked.
bool PlayService::stopServiceThread() {
  const bool lIsPosted = watched([this] { return mThread.postMsg(mFormat.mShutdownMsg); }, mHere.in());
  mThreadEnd.stop(mThread, mHere.in());
  if (mThread.isRunning()) return false;
  if (!lIsPosted) stopReplays();
  if (mPlayers.size() == 0) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "%s::shutdown(): LogPlayer remain: Count=%u", mFormat.mpClass,
         mPlayers.size());
  return true;
}

bool PlayService::hasEnded() {
  if (mThreadEnd.isOver(mThread, mHere.in())) return true;
  mIsLeftBehind = true;
  mPlayers.mute();
  return false;
}

void PlayService::onShutdown(utl::ThreadRawMsg& /*nMsg*/) { stopReplays(); }

void PlayService::stopReplays() {
  if (mReplays.size() == 0) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "%s::shutdown(): %s remain: Count=%u", mFormat.mpClass, mFormat.mpReplayClass,
         mReplays.size());
  for (unsigned int i = 0; i < mReplays.size(); ++i) mReplays[i]->stop();
}

// --- players

bool PlayService::attachPlayer(void* npPlayer) {
  if (mState != INITIALIZED) return false;
  if (mRequests.isOwnThread()) return attachPlayerInternal(npPlayer);
  return mRequests.attach(mAttachPlayerSync, LogPlayerMsg(mFormat.mAttachPlayerMsg, npPlayer), mAttachPlayerResult,
                          "attachPlayer");
}

bool PlayService::detachPlayer(void* npPlayer) {
  if (!mRequests.isOwnThread()) {
    return mRequests.detach(LogPlayerMsg(mFormat.mDetachPlayerMsg, npPlayer, mPlayers.getLastNumber()), "detachPlayer");
  }
  mPlayers.detach(npPlayer);
  return true;
}

bool PlayService::attachPlayerInternal(void* npPlayer) { return npPlayer == nullptr || mPlayers.attach(npPlayer); }

void PlayService::onAttachPlayer(utl::ThreadRawMsg& nMsg) {
  LogPlayerMsg lMsg;
  mAttachPlayerResult = lMsg.restoreFrom(nMsg) && attachPlayerInternal(lMsg.mpObject);
}

void PlayService::onDetachPlayer(utl::ThreadRawMsg& nMsg) {
  LogPlayerMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) mPlayers.detach(lMsg.mpObject, lMsg.mLastNumber);
}

// A player may detach itself or others, stop and start playback, and so begin a second walk inside this one.
void PlayService::tellPlayers(PlayNotice nNotice, int nReason) {
  ListenerTable::Walk lWalk(mPlayers);
  while (void* const lpPlayer = lWalk.next()) tellPlayer(lpPlayer, nNotice, nReason);
}

// --- play listeners, each with its replay

bool PlayService::attachPlayListener(int nLogTypeId, void* npListener) {
  if (mState != INITIALIZED) return false;
  if (mRequests.isOwnThread()) return attachPlayListenerInternal(nLogTypeId, npListener);
  return mRequests.attach(mAttachPlayListenerSync,
                          AttachLogPlayListenerMsg(mFormat.mAttachPlayListenerMsg, nLogTypeId, npListener),
                          mAttachPlayListenerResult, "attachPlayListener");
}

bool PlayService::detachPlayListener(void* npListener) {
  if (mRequests.isOwnThread()) {
    detachPlayListenerInternal(npListener, mLastReplayNumber);
    return true;
  }
  const DetachLogPlayListenerMsg lMsg(mFormat.mDetachPlayListenerMsg, npListener, mLastReplayNumber);
  if (!mRequests.detach(lMsg, "detachPlayListener")) return false;
  TimedReplay* const lpReplay = TimedReplay::delivering();
  if (lpReplay != nullptr && lpReplay->getListenerAddress() == npListener) lpReplay->mute();
  return true;
}

void PlayService::onAttachPlayListener(utl::ThreadRawMsg& nMsg) {
  AttachLogPlayListenerMsg lMsg;
  mAttachPlayListenerResult = lMsg.restoreFrom(nMsg) && attachPlayListenerInternal(lMsg.mLogTypeId, lMsg.mpListener);
}

void PlayService::onDetachPlayListener(utl::ThreadRawMsg& nMsg) {
  DetachLogPlayListenerMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) detachPlayListenerInternal(lMsg.mpObject, lMsg.mLastNumber);
}

bool PlayService::attachPlayListenerInternal(int nLogTypeId, void* npListener) {
  if (npListener == nullptr) return true;
  if (nLogTypeId < 0 || mIsPlaying || mReplays.size() >= mReplays.capacity()) return false;
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (mReplays[i]->getLogTypeId() != nLogTypeId) continue;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::attachPlayListenerInternal(): Duplicate Id=%d", mFormat.mpClass,
           nLogTypeId);
    return false;
  }
  const utl::SmartPointer<TimedReplay> lpReplay(createReplay(nLogTypeId, npListener));
  lpReplay->setNumber(++mLastReplayNumber);
  lpReplay->muteWith(mIsLeftBehind);
  lpReplay->setClock(mClock);
  return mReplays.add(lpReplay);
}

void PlayService::detachPlayListenerInternal(const void* npListener, unsigned int nLastNumber) {
  for (unsigned int i = mReplays.size(); i > 0; --i) {
    const utl::SmartPointer<TimedReplay> lpReplay = mReplays[i - 1];
    if (lpReplay->getListenerAddress() != npListener) continue;
    if (ListenerTable::isLater(lpReplay->getNumber(), nLastNumber)) continue;
    lpReplay->stop();
    JudgeDispacherMsg lJudge(mFormat.mPlayEndMsg, lpReplay.get());
    mThread.eraseMsgInternal(&lJudge);
    mReplays.removeAt(i - 1);
  }
  if (watched([this] { return mThread.postMsg(LogPlayDataDispatcherMsg(mFormat.mPlayEndMsg)); }, mHere.in())) return;
  logFailure("detachPlayListenerInternal", "Can't post thread");
}

bool PlayService::isAnyReplayPlaying() const {
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (mReplays[i]->isPlaying()) return true;
  }
  return false;
}

bool PlayService::hasReplay(const TimedReplay* npReplay) const {
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (mReplays[i].get() == npReplay) return true;
  }
  return false;
}

// --- playback

bool PlayService::startPlay(const char* npPath) { return startPlay(npPath, nullptr); }

bool PlayService::startPlay(const char* const* nppPaths, unsigned int nNum) {
  if (nppPaths == nullptr || nNum == 0 || mIsPlaying || mState != INITIALIZED) return false;
  const Timeline lpTimeline = makeTimeline(nppPaths, nNum, "startPlay");
  return lpTimeline != nullptr && startPlay(nppPaths[0], lpTimeline);
}

// Posted under the lock: a stop on the service's thread either sees no playback, or erases this start from the queue.
bool PlayService::startPlay(const char* npPath, const Timeline& npTimeline) {
  const Operation lOperation(*this);
  if (!lOperation) return false;
  const WatchedLock lLock(mSync, mHere.in());
  if (mIsPlaying) return false;
  LogPathMsg lMsg(mFormat.mStartPlayMsg);
  if (!utl::copyStr(lMsg.mPath, LOG_PATH_SIZE, npPath)) return logFailure("startPlay", "Can't copy path");
  if (!beginPlay(npPath)) return false;
  mpTimeline = npTimeline;
  if (watched([&] { return mThread.postMsg(lMsg); }, mHere.in())) return true;
  mPlayingFile[0] = '\0';
  mIsPlaying = false;
  return logFailure("startPlay", "Can't post thread");
}

bool PlayService::beginPlay(const char* npPath) {
  if (!utl::copyStr(mPlayingFile, LOG_PATH_SIZE, npPath)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::startPlay(): Can't copy playing file: File=%s", mFormat.mpClass, npPath);
    return false;
  }
  ++mPlayNumber;
  mClock.reset();
  mIsEnded = false;
  mIsPlaying = true;
  return true;
}

// A player told of the start may have stopped playback, and even begun another: then this one is over.
void PlayService::onStartPlay(utl::ThreadRawMsg& nMsg) {
  LogPathMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || !markStarted()) return;
  tellPlayers(PLAY_START, 0);
  if (!isStarted()) return;
  startReplays(lMsg.mPath, utl::TimeCounter::getTickTime() + LEAD_MS);
  if (!isAnyReplayPlaying()) notifyLogPlayEnd(LogPlayer::END_NOT_STARTED);
}

void PlayService::startReplays(const char* npPath, uint32_t nZeroTick) {
  const Timeline lpTimeline = timeline();
  mAreReplaysStarted = true;
  mZeroTick = nZeroTick - mStartOffset;
  mClock.start(mZeroTick);
  if (mStartOffset != 0) mClock.moveTo(mStartOffset, nZeroTick);
  if (lpTimeline != nullptr) return startReplaysAt(lpTimeline, mStartOffset);
  sendScout(npPath, {});
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (!mReplays[i]->start(nZeroTick, npPath)) logNotStarted(*mReplays[i]);
  }
}

void PlayService::startReplaysAt(const Timeline& npTimeline, uint32_t nOffset) {
  TimedReplay::Start lStart;
  lStart.mZeroTick = mZeroTick;
  lStart.mpTimeline = npTimeline;
  lStart.mPlace = npTimeline->find(recordFormat(), nOffset);
  lStart.mFromOffset = nOffset;
  sendScout(npTimeline->path(lStart.mPlace.mFile), lStart.mPlace);
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (!mReplays[i]->start(lStart)) logNotStarted(*mReplays[i]);
  }
}

/// A single replay goes alone: it would have the way twice.
void PlayService::sendScout(const char* npPath, const PlayTimeline::Place& nPlace) {
  const bool lAreSeveral = mReplays.size() > 1;
  if (lAreSeveral && mpScout == nullptr) mpScout = std::make_unique<RecordScout>(recordFormat(), mHere);
  if (lAreSeveral) mpScout->start(nPlace.mFile, npPath, nPlace.mPosition);
  for (unsigned int i = 0; i < mReplays.size(); ++i) mReplays[i]->setScout(lAreSeveral ? mpScout.get() : nullptr);
}

void PlayService::logNotStarted(const TimedReplay& nReplay) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::onStartPlay(): Can't start play: Id=%s", mFormat.mpClass,
         nReplay.getIdText());
}

void PlayService::setLogDispatchEnd(TimedReplay* npReplay) {
  const LogPlayDataDispatcherMsg lMsg(mFormat.mPlayEndMsg, npReplay);
  if (!watched([&] { return mThread.postMsg(lMsg); }, mHere.in())) logFailure("setLogDispatchEnd", "Can't post thread");
}

void PlayService::onPlayEnd(utl::ThreadRawMsg& nMsg) {
  LogPlayDataDispatcherMsg lMsg;
  if (!lMsg.restoreFrom(nMsg)) return;
  if (hasReplay(lMsg.mpObject)) lMsg.mpObject->stop();
  if (!isAnyReplayPlaying()) notifyLogPlayEnd(LogPlayer::END_FINISHED);
}

void PlayService::notifyLogPlayEnd(int nReason) {
  if (claimEnd()) tellPlayers(PLAY_END, nReason);
}

// In any state: there may be nothing to send to. The gate is asked but not held over the wait, or a shutdown would wait
// as long as a player holds the thread up.
bool PlayService::stopPlay() {
  if (!Operation(*this).isStarted()) return false;
  const StopPlayMsg lMsg(mFormat.mStopPlayMsg, playNumber());
  if (mRequests.isOwnThread()) {
    stopPlayInternal(lMsg.mPlayNumber);
    return true;
  }
  if (watched([&] { return ServiceRequests::isInListener() ? mThread.postMsg(lMsg) : mThread.sendMsgSync(lMsg); },
              mHere.in())) {
    return true;
  }
  return logFailure("stopPlay", "Can't send thread");
}

void PlayService::onStopPlay(utl::ThreadRawMsg& nMsg) {
  StopPlayMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) stopPlayInternal(lMsg.mPlayNumber);
}

// A player told of the stop may ask for it once more.
void PlayService::stopPlayInternal(unsigned int nPlayNumber) {
  if (mIsStopping || !claimStop(nPlayNumber)) return;
  mIsStopping = true;
  for (unsigned int i = 0; i < mReplays.size(); ++i) mReplays[i]->stop();
  mAreReplaysStarted = false;
  mStartOffset = 0;
  tellPlayers(PLAY_STOP, 0);
  endPlay();
  mIsStopping = false;
}

bool PlayService::getPlayingDir(char* npBuffer, unsigned int nSize) {
  const WatchedLock lLock(mSync, mHere.in());
  if (utl::extractDirPath(mPlayingFile, npBuffer, nSize)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::getPlayingDir(): Can't extract directory path: File=%s", mFormat.mpClass,
         mPlayingFile);
  return false;
}

// --- the playback's state

bool PlayService::markStarted() {
  const WatchedLock lLock(mSync, mHere.in());
  mIsStarted = mIsPlaying;
  return mIsStarted;
}

bool PlayService::isStarted() {
  const WatchedLock lLock(mSync, mHere.in());
  return mIsStarted;
}

/// True once a playback. An end message from before the playback was taken up says nothing about it.
bool PlayService::claimEnd() {
  const WatchedLock lLock(mSync, mHere.in());
  if (!mIsPlaying || !mIsStarted || mIsEnded) return false;
  mIsEnded = true;
  return true;
}

/// False for another playback than the one that was meant.
bool PlayService::claimStop(unsigned int nPlayNumber) {
  const WatchedLock lLock(mSync, mHere.in());
  if (!mIsPlaying || nPlayNumber != mPlayNumber) return false;
  mIsStarted = false;
  return true;
}

unsigned int PlayService::playNumber() {
  const WatchedLock lLock(mSync, mHere.in());
  return mPlayNumber;
}

/// Until here nothing new can have begun, so what is queued belongs to the playback that is over.
void PlayService::endPlay() {
  const WatchedLock lLock(mSync, mHere.in());
  mThread.eraseMsg(mFormat.mStartPlayMsg);
  mThread.eraseMsg(mFormat.mPlayEndMsg);
  mPlayingFile[0] = '\0';
  mpTimeline = nullptr;
  mIsPlaying = false;
}

// --- control of the playback

// As stopPlay(): inside a play listener it is only posted.
bool PlayService::control(const char* npOperation, PlayControlMsg::Operation nOperation, unsigned int nValue) {
  if (!Operation(*this).isStarted() || !mIsPlaying) return false;
  const PlayControlMsg lMsg(mFormat.mControlMsg, nOperation, nValue, playNumber());
  if (mRequests.isOwnThread()) {
    controlInternal(lMsg);
    return true;
  }
  if (watched([&] { return ServiceRequests::isInListener() ? mThread.postMsg(lMsg) : mThread.sendMsgSync(lMsg); },
              mHere.in())) {
    return true;
  }
  return logFailure(npOperation, "Can't send thread");
}

bool PlayService::setPlayRate(unsigned int nPermille) {
  return nPermille >= MIN_RATE && nPermille <= MAX_RATE && control("setPlayRate", PlayControlMsg::SET_RATE, nPermille);
}

bool PlayService::seekPlay(unsigned int nOffsetMs) {
  if (!mIsPlaying) return false;
  const Timeline lpTimeline = needTimeline();
  if (lpTimeline == nullptr || nOffsetMs > lpTimeline->length()) return false;
  return control("seekPlay", PlayControlMsg::SEEK, nOffsetMs);
}

LogPlayPosition PlayService::getPlayPosition() {
  LogPlayPosition lPosition;
  const Timeline lpTimeline = timeline();
  if (!mIsPlaying) return lPosition;
  lPosition.mPositionMs = mClock.position(utl::TimeCounter::getTickTime());
  if (lpTimeline != nullptr) {
    lPosition.mLengthMs = lpTimeline->length();
    lPosition.mPositionMs = std::min(lPosition.mPositionMs, lPosition.mLengthMs);
  }
  lPosition.mRate = mClock.getRate();
  lPosition.mIsPaused = mClock.isPaused();
  return lPosition;
}

void PlayService::onControl(utl::ThreadRawMsg& nMsg) {
  PlayControlMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) controlInternal(lMsg);
}

// A player told of the stop changes nothing any more.
void PlayService::controlInternal(const PlayControlMsg& nMsg) {
  if (mIsStopping || !mIsPlaying || nMsg.mPlayNumber != playNumber()) return;
  switch (nMsg.mOperation) {
    case PlayControlMsg::PAUSE:
      return pause(true);
    case PlayControlMsg::RESUME:
      return pause(false);
    case PlayControlMsg::STEP:
      return step();
    case PlayControlMsg::SET_RATE:
      return setRate(nMsg.mValue);
    case PlayControlMsg::SEEK:
      return seek(nMsg.mValue);
    default:
      return;
  }
}

void PlayService::pause(bool nIsPaused) {
  const uint32_t lNow = utl::TimeCounter::getTickTime();
  if (nIsPaused ? mClock.pause(lNow) : mClock.resume(lNow)) retime();
}

// What is due together with the next record comes with it, of every log type.
void PlayService::step() {
  pause(true);
  bool lIsAny = false;
  uint32_t lNext = 0;
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    uint32_t lNominal = 0;
    if (!mReplays[i]->nextHeld(&lNominal)) continue;
    if (!lIsAny || static_cast<int32_t>(lNominal - lNext) < 0) lNext = lNominal;
    lIsAny = true;
  }
  if (!lIsAny) return;
  mClock.stepTo(lNext);
  retime();
}

void PlayService::setRate(unsigned int nPermille) {
  mClock.setRate(nPermille, utl::TimeCounter::getTickTime());
  retime();
}

// No listener is in a call any more when the replays have stopped. A player that is told may stop, or seek itself.
void PlayService::seek(unsigned int nOffsetMs) {
  if (!mAreReplaysStarted) {
    mStartOffset = nOffsetMs;
    return;
  }
  for (unsigned int i = 0; i < mReplays.size(); ++i) mReplays[i]->stop();
  mThread.eraseMsg(mFormat.mPlayEndMsg);
  reopenEnd();
  const unsigned int lSeekNumber = ++mSeekNumber;
  tellPlayers(PLAY_SEEK, 0);
  const Timeline lpTimeline = timeline();
  if (!mAreReplaysStarted || lpTimeline == nullptr || mSeekNumber != lSeekNumber) return;
  mClock.moveTo(nOffsetMs, utl::TimeCounter::getTickTime() + SEEK_LEAD_MS);
  startReplaysAt(lpTimeline, nOffsetMs);
  if (!isAnyReplayPlaying()) notifyLogPlayEnd(LogPlayer::END_NOT_STARTED);
}

void PlayService::retime() {
  for (unsigned int i = 0; i < mReplays.size(); ++i) mReplays[i]->retime();
}

void PlayService::reopenEnd() {
  const WatchedLock lLock(mSync, mHere.in());
  mIsEnded = false;
}

// --- where a playback lies in its files

PlayService::Timeline PlayService::makeTimeline(const char* const* nppPaths, unsigned int nNum,
                                                const char* npOperation) const {
  const auto lpTimeline = std::make_shared<PlayTimeline>();
  const char* lpBadPath = "";
  if (lpTimeline->build(recordFormat(), nppPaths, nNum, &lpBadPath)) return lpTimeline;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): Can't read: File=%s", mFormat.mpClass, npOperation, lpBadPath);
  return nullptr;
}

/// A playback of one file is measured when somebody first seeks in it.
PlayService::Timeline PlayService::needTimeline() {
  char lFile[LOG_PATH_SIZE];
  unsigned int lPlayNumber = 0;
  {
    const WatchedLock lLock(mSync, mHere.in());
    if (mpTimeline != nullptr) return mpTimeline;
    utl::copyStr(lFile, LOG_PATH_SIZE, mPlayingFile);
    lPlayNumber = mPlayNumber;
  }
  const char* const lpFile = lFile;
  const Timeline lpTimeline = makeTimeline(&lpFile, 1, "seekPlay");
  const WatchedLock lLock(mSync, mHere.in());
  if (lpTimeline != nullptr && mIsPlaying && mPlayNumber == lPlayNumber) mpTimeline = lpTimeline;
  return mpTimeline;
}

PlayService::Timeline PlayService::timeline() {
  const WatchedLock lLock(mSync, mHere.in());
  return mpTimeline;
}

// --- messages

bool PlayService::receive(int nMsgId, utl::ThreadRawMsg& nMsg) {
  const struct {
    int mMsgId;
    void (PlayService::*mpHandle)(utl::ThreadRawMsg&);
  } ROUTES[] = {
      {mFormat.mAttachPlayerMsg, &PlayService::onAttachPlayer},
      {mFormat.mDetachPlayerMsg, &PlayService::onDetachPlayer},
      {mFormat.mAttachPlayListenerMsg, &PlayService::onAttachPlayListener},
      {mFormat.mDetachPlayListenerMsg, &PlayService::onDetachPlayListener},
      {mFormat.mStartPlayMsg, &PlayService::onStartPlay},
      {mFormat.mStopPlayMsg, &PlayService::onStopPlay},
      {mFormat.mPlayEndMsg, &PlayService::onPlayEnd},
      {mFormat.mShutdownMsg, &PlayService::onShutdown},
      {mFormat.mControlMsg, &PlayService::onControl},
  };
  for (const auto& lRoute : ROUTES) {
    if (lRoute.mMsgId != nMsgId) continue;
    (this->*lRoute.mpHandle)(nMsg);
    return true;
  }
  return false;
}

}  // namespace nfw
