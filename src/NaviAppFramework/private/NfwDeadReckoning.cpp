#include "NfwDeadReckoning.h"

#include "NfwDeadReckoningDataDispatcher.h"
#include "NfwDeadReckoningLoggerPlayer.h"
#include "NfwDeadReckoningSdkDataReceiver.h"
#include "NfwDeadReckoningSensorSysLoggerPlayer.h"
#include "NfwLogger.h"
#include "NfwThreadMsgProfilerManager.h"
#include "OneInstance.h"
#include "SourceSwitch.h"
#include "utl/MsgDrivenSharedThread.h"

namespace nfw {
namespace {

const unsigned int QUEUE_LENGTH = 256;

}  // namespace

unsigned int DeadReckoning::mMaxDeadReckoningNmeaDataListenerNum = 0;
int DeadReckoning::mInitializeLoggerId = NO_LOGGER_ID;

void DeadReckoning::initializeMaxDeadReckoningNmeaDataListenerNum(unsigned int nValue) {
  mMaxDeadReckoningNmeaDataListenerNum = nValue;
}
void DeadReckoning::initializeLoggerId(int nValue) { mInitializeLoggerId = nValue; }

OneInstance<DeadReckoning>& DeadReckoning::instance() {
  static OneInstance<DeadReckoning>* const lpInstance =
      new OneInstance<DeadReckoning>("nfw::DeadReckoning_Instantiation");
  return *lpInstance;
}

DeadReckoning* DeadReckoning::get() {
  return instance().get([] { return new DeadReckoning; });
}

void DeadReckoning::destroy() { instance().destroy(); }

DeadReckoning::DeadReckoning()
    : mpThread(new utl::MsgDrivenSharedThread(ThreadMsgProfilerManager::profiledSize(THREAD_MSG_DEAD_RECKONING),
                                              QUEUE_LENGTH, 0, "nfw::DeadReckoning_SharedThread", 0)),
      mpDispatcher(new DeadReckoningDataDispatcher(mpThread.get(), mMaxDeadReckoningNmeaDataListenerNum)),
      mpSysLogPlayer(new DeadReckoningSensorSysLoggerPlayer(mpDispatcher.get(), mpThread.get())),
      mpLogPlayer(new DeadReckoningLoggerPlayer(mpDispatcher.get(), mpThread.get(), mInitializeLoggerId)),
      mpSdkReceiver(new DeadReckoningSdkDataReceiver(mpDispatcher.get(), mpThread.get(), mInitializeLoggerId)),
      mpSources(new SourceSwitch(
          "DeadReckoning", "nfw::DeadReckoning_SyncObject", *mpThread, {*mpSdkReceiver, "DeadReckoningSdkDataReceiver"},
          {*mpSysLogPlayer, "DeadReckoningSysLogPlayer"}, {*mpLogPlayer, "DeadReckoningLogPlayer"})) {}

DeadReckoning::~DeadReckoning() = default;

bool DeadReckoning::end() {
  if (mpSources->end(this, this)) return true;
  mpDispatcher->mute();
  return false;
}

bool DeadReckoning::initialize() { return mpSources->initialize(this, this); }
void DeadReckoning::finalize() { mpSources->shutdown(this, this); }

bool DeadReckoning::attachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener) {
  return mpDispatcher->attachDeadReckoningNmeaDataListener(npListener);
}

void DeadReckoning::detachDeadReckoningNmeaDataListener(DeadReckoningNmeaDataListener* npListener) {
  mpDispatcher->detachDeadReckoningNmeaDataListener(npListener);
}

void DeadReckoning::startSysLogPlay() { mpSources->startSysLogPlay(); }
void DeadReckoning::stopSysLogPlay() { mpSources->stopSysLogPlay(); }
void DeadReckoning::receiveSysLogPlayEnd() {}
void DeadReckoning::seekSysLogPlay() { mpSources->seekSysLogPlay(); }
void DeadReckoning::startLogPlay() { mpSources->startLogPlay(); }
void DeadReckoning::stopLogPlay() { mpSources->stopLogPlay(); }
void DeadReckoning::receiveLogPlayEnd(int /*nReason*/) {}
void DeadReckoning::seekLogPlay() { mpSources->seekLogPlay(); }

}  // namespace nfw
