#include "NfwSharedThreadComponent.h"

#include <utility>

#include "NfwAppLog.h"
#include "Watched.h"

namespace nfw {

SharedThreadComponent::SharedThreadComponent(const char* npName) : Component(npName) {}

SharedThreadComponent::~SharedThreadComponent() {
  if (mpThread != nullptr) watched([this] { mpThread->abortMsg(this); });
}

bool SharedThreadComponent::initializeThread(utl::MsgDrivenSharedThread* npThread) {
  if (npThread == nullptr) return false;
  if (!npThread->isRunning()) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SharedThreadComponent[%s]::initializeThread(): Thread is not running",
           getComponentName());
    return false;
  }
  utl::MsgDrivenSharedThread* const lpBefore = std::exchange(mpThread, npThread);
  if (lpBefore != nullptr && lpBefore != npThread) watched([&] { lpBefore->abortMsg(this); });
  return true;
}

utl::MsgDrivenSharedThread* SharedThreadComponent::getThread() const { return mpThread; }

bool SharedThreadComponent::postMsg(const utl::Msg& nMsg) {
  return mpThread != nullptr && watched([&] { return mpThread->postMsg(this, nMsg); });
}

bool SharedThreadComponent::postMsg(int nMsgId) {
  return mpThread != nullptr && watched([&] { return mpThread->postMsg(this, nMsgId); });
}

bool SharedThreadComponent::sendMsgSync(const utl::Msg& nMsg) {
  return mpThread != nullptr && watched([&] { return mpThread->sendMsgSync(this, nMsg); });
}

bool SharedThreadComponent::sendMsgSync(int nMsgId) {
  return mpThread != nullptr && watched([&] { return mpThread->sendMsgSync(this, nMsgId); });
}

bool SharedThreadComponent::sendMsgInterrupt(const utl::Msg& nMsg) {
  return mpThread != nullptr && watched([&] { return mpThread->sendMsgInterrupt(this, nMsg); });
}

bool SharedThreadComponent::sendMsgInterrupt(int nMsgId) {
  return mpThread != nullptr && watched([&] { return mpThread->sendMsgInterrupt(this, nMsgId); });
}

int SharedThreadComponent::setTimer(unsigned int nTimeMs, int nCount, unsigned int nParam, int nKind) {
  return mpThread != nullptr ? mpThread->setTimer(this, nTimeMs, nCount, nParam, nKind) : 0;
}

bool SharedThreadComponent::killTimer(int nTimerId, int nFlag) {
  return mpThread != nullptr && mpThread->killTimer(nTimerId, nFlag);
}

}  // namespace nfw
