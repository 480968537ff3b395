#include "NfwDeadReckoningSdkDataReceiver.h"

#include "BytesMsg.h"
#include "DeadReckoningSlots.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"

namespace nfw {
namespace {

const int DEAD_RECKONING_DATA_RECEIVE_MSG = ownMsgId(0x02);
const int SENSOR_LOG_DEAD_RECKONING = 1;
const unsigned int RECORD_SIZE = 1400;

class DeadReckoningDataReceiveMsg : public BytesMsg<RECORD_SIZE> {
 public:
  static constexpr const char* NAME = "DeadReckoningDataReceiveMsg";
  using BytesMsg<RECORD_SIZE>::BytesMsg;
};

const ThreadMsgProfile<DeadReckoningDataReceiveMsg> gProfile(THREAD_MSG_DEAD_RECKONING);

}  // namespace

DeadReckoningSdkDataReceiver::DeadReckoningSdkDataReceiver(DeadReckoningDataDispatcher* npDispatcher,
                                                           utl::MsgDrivenSharedThread* npThread, int nLoggerId)
    : mpThread(npThread), mpDispatcher(npDispatcher), mLoggerId(nLoggerId) {}

bool DeadReckoningSdkDataReceiver::initialize() {
  const WatchedStep lStep(Here::now());
  return ZTSDeadReckoning::GetInstance()->addListener(this);
}

void DeadReckoningSdkDataReceiver::finalize() {
  const WatchedStep lStep(Here::now());
  ZTSDeadReckoning::GetInstance()->removeListener(this);
}

void DeadReckoningSdkDataReceiver::onNotifyLocationInfoForTervin(ZTSDeadReckoningDef::DRG_LOCATION_INFO const* npInfo) {
  if (npInfo == nullptr || !mpThread->isRunning()) return;
  unsigned char lRecord[RECORD_SIZE] = {};
  const int lSize = mConverter.convertFromDeadReckoningData(*npInfo, lRecord, RECORD_SIZE);
  if (lSize == -1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSdkDataReceiver::onNotifyLocationInfoForTervin(): nfw::convertFromDeadReckoningData() "
           "failed");
    return;
  }
  if (lSize > static_cast<int>(RECORD_SIZE)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSdkDataReceiver::onNotifyLocationInfoForTervin(): nfw::convertFromDeadReckoningData() "
           "lDataSize is over lBuffer size");
    return;
  }
  const unsigned int lRecordSize = static_cast<unsigned int>(lSize);
  DeadReckoningNmeaSentence lSet;
  if (!mConverter.convertToDeadReckoningNmeaSentence(lRecord, lRecordSize, &lSet)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSdkDataReceiver::onNotifyLocationInfoForTervin(): "
           "nfw::convertToDeadReckoningNmeaSentence() failed");
    return;
  }
  if (isOn) mpDispatcher->dispatch(lSet);
  const DeadReckoningDataReceiveMsg lMsg(DEAD_RECKONING_DATA_RECEIVE_MSG, lRecord, lRecordSize);
  postRecord(*mpThread, this, lMsg, "nfw::DeadReckoningSdkDataReceiver::onNotifyLocationInfoForTervin()");
}

void DeadReckoningSdkDataReceiver::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<DeadReckoningSdkDataReceiver> ROUTES[] = {
      {DEAD_RECKONING_DATA_RECEIVE_MSG, &DeadReckoningSdkDataReceiver::onReceiveDeadReckoningNmeaData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::DeadReckoningSdkDataReceiver");
}

void DeadReckoningSdkDataReceiver::onReceiveDeadReckoningNmeaData(utl::ThreadRawMsg& nMsg) {
  DeadReckoningDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg)) return;
  DeadReckoningNmeaSentence lSet;
  if (!mConverter.convertToDeadReckoningNmeaSentence(lMsg.mData, lMsg.mSize, &lSet)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::DeadReckoningSdkDataReceiver::onReceiveDeadReckoningNmeaData(): "
           "nfw::convertToDeadReckoningNmeaSentence() failed");
    return;
  }
  eachSlot(lSet, [this](const NmeaSentenceData& nSlot) {
    if (nSlot.mLength > 0 && mLoggerId != NO_LOGGER_ID) Logger::write(mLoggerId, nSlot.mText, nSlot.mLength);
  });
  SensorSysLoggerManager::write(SENSOR_LOG_DEAD_RECKONING, static_cast<int>(mConverter.getBinaryLogVersion()),
                                lMsg.mData, lMsg.mSize);
}

}  // namespace nfw
