#include "PlayService.h"

#include <algorithm>
#include <new>

#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogPlayer.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PlayMsgs.h"
#include "ServiceThread.h"
#include "TimedReplay.h"
#include "utl/StringUtil.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const unsigned int QUEUE_LENGTH = 64;
const unsigned int MAX_END_NUM = 4096;  // more replays than a process has threads for: a limit may mean "any number"
const unsigned int LEAD_MS = 1000;      // from the start of a playback to its first record: time to read ahead

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
  mThreadEnd.stop(mThread, "Timeout", mHere.in());
  if (mThread.isRunning()) return false;
  if (!lIsPosted) stopReplays();
  if (mPlayers.size() == 0) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "%s::shutdown(): LogPlayer remain: Count=%u", mFormat.mpClass,
         mPlayers.size());
  return true;
}

bool PlayService::hasEnded() {
  if (mThreadEnd.isOver(mThread, "Timeout", mHere.in())) return true;
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

// Posted under the lock: a stop on the service's thread either sees no playback, or erases this start from the queue.
bool PlayService::startPlay(const char* npPath) {
  const Operation lOperation(*this);
  if (!lOperation) return false;
  const WatchedLock lLock(mSync, mHere.in());
  if (mIsPlaying) return false;
  LogPathMsg lMsg(mFormat.mStartPlayMsg);
  if (!utl::copyStr(lMsg.mPath, LOG_PATH_SIZE, npPath)) return logFailure("startPlay", "Can't copy path");
  if (!beginPlay(npPath)) return false;
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
  mIsEnded = false;
  mIsStarted = false;
  mIsPlaying = true;
  return true;
}

// A player told of the start may have stopped playback, and even begun another: then this one is over.
void PlayService::onStartPlay(utl::ThreadRawMsg& nMsg) {
  LogPathMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || !markStarted()) return;
  tellPlayers(PLAY_START, 0);
  if (!isStarted()) return;
  const unsigned int lStartTick = utl::TimeCounter::getTickTime() + LEAD_MS;
  for (unsigned int i = 0; i < mReplays.size(); ++i) {
    if (mReplays[i]->start(lStartTick, lMsg.mPath)) continue;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::onStartPlay(): Can't start play: Id=%s", mFormat.mpClass,
           mReplays[i]->getIdText());
  }
  if (!isAnyReplayPlaying()) notifyLogPlayEnd(LogPlayer::END_NOT_STARTED);
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
  mIsPlaying = false;
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
  };
  for (const auto& lRoute : ROUTES) {
    if (lRoute.mMsgId != nMsgId) continue;
    (this->*lRoute.mpHandle)(nMsg);
    return true;
  }
  return false;
}

}  // namespace nfw
