#include "NfwGnssSensorSysLoggerPlayer.h"

#include "GatheredMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"
#include "VersionedBytesMsg.h"

namespace nfw {
namespace {

const int NMEA_DATA_RECEIVE_MSG = ownMsgId(0x02);
const int SENSOR_LOG_GNSS = 0;
const unsigned int MAX_NMEA_SENTENCE_SIZE = 256;

class NmeaDataReceiveMsg : public GatheredMsg<VersionedBytesMsg<60>> {
 public:
  static constexpr const char* NAME = "NmeaDataReceiveMsg";
  using GatheredMsg<VersionedBytesMsg<60>>::GatheredMsg;
};

const ThreadMsgProfile<NmeaDataReceiveMsg> gProfile(THREAD_MSG_GNSS);

}  // namespace

GnssSensorSysLoggerPlayer::GnssSensorSysLoggerPlayer(GnssDataDispatcher* npDispatcher,
                                                     utl::MsgDrivenSharedThread* npThread)
    : mpThread(npThread), mReplay(*npDispatcher) {}

bool GnssSensorSysLoggerPlayer::initialize() {
  if (SensorSysLoggerManager::get()->attachPlayListener(SENSOR_LOG_GNSS, this)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GnssSensorSysLoggerPlayer:initialize() nfw::attachPlayListener() false");
  return false;
}

void GnssSensorSysLoggerPlayer::finalize() { SensorSysLoggerManager::get()->detachPlayListener(this); }

void GnssSensorSysLoggerPlayer::receiveSysLogPlayData(int nLogTypeId, int nLogVersion, const unsigned char* npData,
                                                      unsigned int nSize) {
  if (nLogTypeId != SENSOR_LOG_GNSS || !isOn || nSize > NmeaDataReceiveMsg::DATA_MAX || !mpThread->isRunning()) return;
  const NmeaDataReceiveMsg lMsg(mGeneration, NMEA_DATA_RECEIVE_MSG, nLogVersion, npData, nSize);
  postRecord(*mpThread, this, lMsg, "nfw::GnssSensorSysLoggerPlayer::receiveSysLogPlayData()");
}

void GnssSensorSysLoggerPlayer::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<GnssSensorSysLoggerPlayer> ROUTES[] = {
      {NMEA_DATA_RECEIVE_MSG, &GnssSensorSysLoggerPlayer::onReceiveNmeaData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::GnssSensorSysLoggerPlayer");
}

void GnssSensorSysLoggerPlayer::onReceiveNmeaData(utl::ThreadRawMsg& nMsg) {
  NmeaDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || lMsg.mSize > NmeaDataReceiveMsg::DATA_MAX) return;
  if (isFirstOf(lMsg.mGeneration)) clearSentenceData();
  const unsigned int lVersion = static_cast<unsigned int>(lMsg.mVersion);
  NmeaBinaryLogData* const lpConverter = getConverter(lVersion);
  if (lpConverter == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::GnssSensorSysLoggerPlayer::onReceiveNmeaData(): getConverter() failed LogVersion=0x%02x", lVersion);
    return;
  }
  unsigned char lText[MAX_NMEA_SENTENCE_SIZE + 1] = {};  // terminated, also when it is full
  const int lSize = lpConverter->convertToNmeaSentence(lMsg.mData, lMsg.mSize, lText, MAX_NMEA_SENTENCE_SIZE);
  if (lSize == -1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::GnssSensorSysLoggerPlayer::onReceiveNmeaData(): nfw::convertToNmeaSentence() failed LogVersion=0x%02x",
           lVersion);
  } else if (lSize > static_cast<int>(MAX_NMEA_SENTENCE_SIZE)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::GnssSensorSysLoggerPlayer::onReceiveNmeaData(): nfw::convertToNmeaSentence() lNmeaDataSize is over "
           "MAX_NMEA_SENTENCE_SIZE");
  } else {
    mReplay.play(lText, static_cast<unsigned int>(lSize));
  }
}

}  // namespace nfw
