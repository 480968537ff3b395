#include "utl/MsgDrivenThread.h"

#include "MsgLoop.h"

namespace utl {

MsgDrivenThread::MsgDrivenThread(unsigned int nMaxMsgDataSize, unsigned int nMaxMsgNum, const char* npName,
                                 unsigned int nTimerNum)
    : mpLoop(std::make_shared<MsgLoop>(nMaxMsgDataSize, nMaxMsgNum, npName, nTimerNum)) {}

MsgDrivenThread::~MsgDrivenThread() { mpLoop->leave(); }

int MsgDrivenThread::start(ThreadMsgListener* npListener, int /*nA*/, unsigned int nTimeoutMs,
                           WatchdogTimerListener* /*npWatchdog*/, int /*nB*/, unsigned int /*nC*/,
                           const ThreadPriority& nPriority, unsigned int /*nD*/) {
  return npListener == nullptr ? 1 : mpLoop->start(npListener, nTimeoutMs, nPriority.getValue());
}

int MsgDrivenThread::stop(int nWait, unsigned int nTimeoutMs) { return mpLoop->stop(nWait != 0, nTimeoutMs); }

// The loop takes a null listener for the one given to start.
bool MsgDrivenThread::postMsg(const Msg& nMsg) { return mpLoop->post(nullptr, nMsg); }
bool MsgDrivenThread::postMsg(int nMsgId) { return mpLoop->post(nullptr, Msg(nMsgId)); }
bool MsgDrivenThread::sendMsgSync(const Msg& nMsg) { return mpLoop->send(nullptr, nMsg, false); }
bool MsgDrivenThread::sendMsgSync(int nMsgId) { return mpLoop->send(nullptr, Msg(nMsgId), false); }
bool MsgDrivenThread::sendMsgInterrupt(const Msg& nMsg) { return mpLoop->send(nullptr, nMsg, true); }
bool MsgDrivenThread::sendMsgInterrupt(int nMsgId) { return mpLoop->send(nullptr, Msg(nMsgId), true); }

int MsgDrivenThread::setTimer(unsigned int nTimeMs, int nCount, unsigned int nParam, int /*nKind*/) {
  return mpLoop->setTimer(nullptr, nTimeMs, nCount, nParam);
}

bool MsgDrivenThread::killTimer(int nTimerId, int /*nFlag*/) { return mpLoop->killTimer(nTimerId); }

bool MsgDrivenThread::hasMsg(int nMsgId) const { return mpLoop->hasMsg(nullptr, nMsgId); }
unsigned int MsgDrivenThread::eraseMsg(int nMsgId) { return mpLoop->eraseMsg(nullptr, nMsgId); }
unsigned int MsgDrivenThread::eraseMsgInternal(MsgJudgementInterface* npJudgement) {
  return mpLoop->eraseJudged(nullptr, npJudgement);
}
int MsgDrivenThread::getFirstMsgId() const { return mpLoop->firstMsgId(); }

bool MsgDrivenThread::isRunning() const { return mpLoop->isRunning(); }
int MsgDrivenThread::getId() const { return mpLoop->id(); }
const char* MsgDrivenThread::getName() const { return mpLoop->name(); }

}  // namespace utl
