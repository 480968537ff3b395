#include "DispatcherCore.h"

#include "FieldMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

class ListenerMsg : public PointerMsg<void> {
 public:
  static constexpr const char* NAME = "ListenerMsg";
  using PointerMsg<void>::PointerMsg;
};

const ThreadMsgProfile<ListenerMsg> gGnssProfile(THREAD_MSG_GNSS);
const ThreadMsgProfile<ListenerMsg> gDeadReckoningProfile(THREAD_MSG_DEAD_RECKONING);

}  // namespace

DispatcherCore::DispatcherCore(const char* npName, unsigned int nCapacity, utl::MsgDrivenSharedThread* npThread)
    : mListeners(nCapacity, true), mpName(npName), mSync(npName), mpThread(npThread) {}

bool DispatcherCore::attach(void* npListener, const Here& nHere) {
  if (npListener == nullptr) return true;
  if (isOwnThread()) return mListeners.attach(npListener);
  return request(DISPATCHER_ATTACH, npListener, nHere);
}

bool DispatcherCore::detach(void* npListener, const Here& nHere) {
  if (npListener == nullptr) return true;
  if (isOwnThread()) {
    mListeners.detach(npListener);
    return true;
  }
  return request(DISPATCHER_DETACH, npListener, nHere);
}

bool DispatcherCore::request(int nMsgId, void* npListener, const Here& nHere) {
  const WatchedLock lLock(mSync, nHere);
  const ListenerMsg lMsg(nMsgId, npListener);
  if (!watched([&] { return mpThread->sendMsgInterrupt(this, lMsg); }, nHere)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::%s(): Can't send thread", mpName, nHere.mpFunction);
    return false;
  }
  return mResult;
}

void DispatcherCore::post(const utl::Msg& nMsg, const Here& nHere) {
  if (watched([&] { return mpThread->postMsg(this, nMsg); }, nHere)) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s::dispatch(): Can't send thread", mpName);
}

bool DispatcherCore::isOwnThread() const { return mpThread->getId() == utl::Thread::getCurrentId(); }

void DispatcherCore::receive(utl::ThreadRawMsg& nMsg, const Here& nHere) {
  static const MsgRoute<DispatcherCore> ROUTES[] = {
      {DISPATCHER_ATTACH, &DispatcherCore::onAttachListener},
      {DISPATCHER_DETACH, &DispatcherCore::onDetachListener},
      {DISPATCHER_DISPATCH, &DispatcherCore::onDispatch},
  };
  const WatchedStep lStep(nHere);
  routeMsg(*this, ROUTES, nMsg, mpName);
}

void DispatcherCore::onAttachListener(utl::ThreadRawMsg& nMsg) {
  ListenerMsg lMsg;
  mResult = lMsg.restoreFrom(nMsg) && mListeners.attach(lMsg.mpObject);
}

void DispatcherCore::onDetachListener(utl::ThreadRawMsg& nMsg) {
  ListenerMsg lMsg;
  mResult = lMsg.restoreFrom(nMsg);
  mListeners.detach(lMsg.mpObject);
}

}  // namespace nfw
