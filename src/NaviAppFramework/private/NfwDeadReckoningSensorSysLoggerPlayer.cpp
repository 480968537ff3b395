#include "NfwDeadReckoningSensorSysLoggerPlayer.h"

#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"
#include "VersionedBytesMsg.h"

namespace nfw {
namespace {

const int DEAD_RECKONING_DATA_RECEIVE_MSG = ownMsgId(0x02);
const int SENSOR_LOG_DEAD_RECKONING = 1;

class DeadReckoningDataReceiveMsg : public VersionedBytesMsg<1400> {
 public:
  static constexpr const char* NAME = "DeadReckoningDataReceiveMsg";
  using VersionedBytesMsg<1400>::VersionedBytesMsg;
};

const ThreadMsgProfile<DeadReckoningDataReceiveMsg> gProfile(THREAD_MSG_DEAD_RECKONING);

}  // namespace

DeadReckoningSensorSysLoggerPlayer::DeadReckoningSensorSysLoggerPlayer(DeadReckoningDataDispatcher* npDispatcher,
                                                                       utl::MsgDrivenSharedThread* npThread)
    : mpThread(npThread), mpDispatcher(npDispatcher) {}

bool DeadReckoningSensorSysLoggerPlayer::initialize() {
  if (SensorSysLoggerManager::get()->attachPlayListener(SENSOR_LOG_DEAD_RECKONING, this)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "nfw::DeadReckoningSensorSysLoggerPlayer:initialize() nfw::attachPlayListener() false");
  return false;
}

void DeadReckoningSensorSysLoggerPlayer::finalize() { SensorSysLoggerManager::get()->detachPlayListener(this); }

void DeadReckoningSensorSysLoggerPlayer::receiveSysLogPlayData(int nLogTypeId, int nLogVersion,
                                                               const unsigned char* npData, unsigned int nSize) {
  if (nLogTypeId != SENSOR_LOG_DEAD_RECKONING || !isOn) return;
  if (nSize > DeadReckoningDataReceiveMsg::DATA_MAX || !mpThread->isRunning()) return;
  const DeadReckoningDataReceiveMsg lMsg(DEAD_RECKONING_DATA_RECEIVE_MSG, nLogVersion, npData, nSize);
  postRecord(*mpThread, this, lMsg, "nfw::DeadReckoningSensorSysLoggerPlayer::receiveSysLogPlayData()");
}

void DeadReckoningSensorSysLoggerPlayer::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<DeadReckoningSensorSysLoggerPlayer> ROUTES[] = {
      {DEAD_RECKONING_DATA_RECEIVE_MSG, &DeadReckoningSensorSysLoggerPlayer::onReceiveDeadReckoningData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::DeadReckoningSensorSysLoggerPlayer");
}

void DeadReckoningSensorSysLoggerPlayer::onReceiveDeadReckoningData(utl::ThreadRawMsg& nMsg) {
  DeadReckoningDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || lMsg.mSize > DeadReckoningDataReceiveMsg::DATA_MAX) return;
  const unsigned int lVersion = static_cast<unsigned int>(lMsg.mVersion);
  NmeaBinaryLogData* const lpConverter = getConverter(lVersion);
  if (lpConverter == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSensorSysLoggerPlayer::onReceiveDeadReckoningData(): getConverter() failed "
           "LogVersion=0x%02x",
           lVersion);
    return;
  }
  DeadReckoningNmeaSentence lSet;
  if (!lpConverter->convertToDeadReckoningNmeaSentence(lMsg.mData, lMsg.mSize, &lSet)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSensorSysLoggerPlayer::onReceiveDeadReckoningData(): "
           "nfw::convertToDeadReckoningNmeaSentence() failed LogVersion=0x%02x",
           lVersion);
    return;
  }
  mpDispatcher->dispatch(lSet);
}

}  // namespace nfw
