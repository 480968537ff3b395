#include "utl/MsgDrivenSharedThread.h"

#include "MsgLoop.h"

namespace utl {

MsgDrivenSharedThread::MsgDrivenSharedThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum,
                                             unsigned int /*nReserved*/, const char* npName, unsigned int nTimerNum)
    : mpLoop(std::make_shared<MsgLoop>(nMaxMsgDataSize, nMaxMsgNum, npName, nTimerNum)) {}

MsgDrivenSharedThread::~MsgDrivenSharedThread() { mpLoop->leave(); }

int MsgDrivenSharedThread::start(int /*nA*/, unsigned int nTimeoutMs, WatchdogTimerListener* /*npWatchdog*/, int /*nB*/,
                                 unsigned int /*nC*/, const ThreadPriority& nPriority, unsigned int /*nD*/) {
  return mpLoop->start(nullptr, nTimeoutMs, nPriority.getValue());
}

int MsgDrivenSharedThread::stop(int nWait, unsigned int nTimeoutMs) { return mpLoop->stop(nWait != 0, nTimeoutMs); }

// The loop takes a null listener for any: here there is no such thing.
bool MsgDrivenSharedThread::postMsg(ThreadMsgListener* npListener, const Msg& nMsg) {
  return npListener != nullptr && mpLoop->post(npListener, nMsg);
}
bool MsgDrivenSharedThread::postMsg(ThreadMsgListener* npListener, int nMsgId) {
  return postMsg(npListener, Msg(nMsgId));
}
bool MsgDrivenSharedThread::sendMsgSync(ThreadMsgListener* npListener, const Msg& nMsg) {
  return npListener != nullptr && mpLoop->send(npListener, nMsg, false);
}
bool MsgDrivenSharedThread::sendMsgSync(ThreadMsgListener* npListener, int nMsgId) {
  return sendMsgSync(npListener, Msg(nMsgId));
}
bool MsgDrivenSharedThread::sendMsgInterrupt(ThreadMsgListener* npListener, const Msg& nMsg) {
  return npListener != nullptr && mpLoop->send(npListener, nMsg, true);
}
bool MsgDrivenSharedThread::sendMsgInterrupt(ThreadMsgListener* npListener, int nMsgId) {
  return sendMsgInterrupt(npListener, Msg(nMsgId));
}

int MsgDrivenSharedThread::setTimer(ThreadMsgListener* npListener, unsigned int nTimeMs, int nCount,
                                    unsigned int nParam, int /*nKind*/) {
  return npListener == nullptr ? -1 : mpLoop->setTimer(npListener, nTimeMs, nCount, nParam);
}

bool MsgDrivenSharedThread::killTimer(int nTimerId, int /*nFlag*/) { return mpLoop->killTimer(nTimerId); }

bool MsgDrivenSharedThread::hasMsg(ThreadMsgListener* npListener, int nMsgId) const {
  return npListener != nullptr && mpLoop->hasMsg(npListener, nMsgId);
}
unsigned int MsgDrivenSharedThread::eraseMsg(ThreadMsgListener* npListener, int nMsgId) {
  return npListener == nullptr ? 0 : mpLoop->eraseMsg(npListener, nMsgId);
}
unsigned int MsgDrivenSharedThread::eraseMsgInternal(ThreadMsgListener* npListener,
                                                     MsgDrivenThread::MsgJudgementInterface* npJudgement) {
  return npListener == nullptr ? 0 : mpLoop->eraseJudged(npListener, npJudgement);
}
int MsgDrivenSharedThread::getFirstMsgId() const { return mpLoop->firstMsgId(); }

void MsgDrivenSharedThread::abortMsg(ThreadMsgListener* npListener) {
  if (npListener != nullptr) mpLoop->abort(npListener);
}

bool MsgDrivenSharedThread::isRunning() const { return mpLoop->isRunning(); }
int MsgDrivenSharedThread::getId() const { return mpLoop->id(); }
const char* MsgDrivenSharedThread::getName() const { return mpLoop->name(); }

}  // namespace utl
