#include "NfwGpsSdkPlayer.h"

#include "BytesMsg.h"
#include "GpsSdkRecords.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"
#include "Watched.h"

namespace nfw {
namespace {

const int NMEA_DATA_RECEIVE_MSG = ownMsgId(0x02);
const unsigned int RECORD_SIZE = NmeaBinaryLogData::MIN_RECORD_BUFFER;
const int SENSOR_LOG_GNSS = 0;

class NmeaDataReceiveMsg : public BytesMsg<130> {
 public:
  static constexpr const char* NAME = "NmeaDataReceiveMsg";
  using BytesMsg<130>::BytesMsg;
};

const ThreadMsgProfile<NmeaDataReceiveMsg> gProfile(THREAD_MSG_GNSS);

/// The systems that the SDK knows, by the configured number.
const struct {
  GeodeticSystem mSystem;
  const char* mpName;
} SYSTEMS[] = {{WGS_84_GPS, "WGS_84_GPS"}, {TOKYO_GPS, "TOKYO_GPS"}};

bool reportRegistration(bool nIsRegistered, const char* npOperation, const char* npSystem) {
  if (nIsRegistered) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GpsSdkPlayer:initialize() Gps::%s(%s) false", npOperation, npSystem);
  return false;
}

}  // namespace

GpsSdkPlayer::GpsSdkPlayer(GnssDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread, int nLoggerId,
                           int nGeodeticSystemType)
    : mpThread(npThread), mpDispatcher(npDispatcher), mLoggerId(nLoggerId), mGeodeticSystemType(nGeodeticSystemType) {}

bool GpsSdkPlayer::initialize() {
  Gps* const lpGps = Gps::GetInstance();
  if (mGeodeticSystemType != 0 && mGeodeticSystemType != 1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GpsSdkPlayer:initialize() Invalid Geodetic SYstem[%d]",
           mGeodeticSystemType);
    return false;
  }
  const auto& lSystem = SYSTEMS[mGeodeticSystemType];
  const bool lIsRegistered = watched([&] { return lpGps->registerGpsNmeaListener(this, lSystem.mSystem); });
  if (!reportRegistration(lIsRegistered, "registerGpsNmeaListener", lSystem.mpName)) return false;
  const bool lIsParseRegistered = watched([&] { return lpGps->registerGpsParseNmeaListener(this, lSystem.mSystem); });
  return reportRegistration(lIsParseRegistered, "registerGpsParseNmeaListener", lSystem.mpName);
}

void GpsSdkPlayer::finalize() {
  Gps* const lpGps = Gps::GetInstance();
  watched([&] { return lpGps->unRegisterGpsNmeaListener(this); });
  watched([&] { return lpGps->unRegisterGpsParseNmeaListener(this); });
}

void GpsSdkPlayer::notifyReceiveNmeaSentence(char const* npSentence, unsigned int nSize) {
  if (npSentence == nullptr || !mpThread->isRunning() || nSize > NmeaDataReceiveMsg::DATA_MAX) return;
  const NmeaDataReceiveMsg lMsg(NMEA_DATA_RECEIVE_MSG, npSentence, nSize);
  if (isOn) mpDispatcher->dispatch(lMsg.mData, nSize);
  postRecord(*mpThread, this, lMsg, "nfw::GpsSdkPlayer::notifyReceiveNmeaSentence()");
}

template <class SdkRecord>
void GpsSdkPlayer::dispatch(const SdkRecord* npRecord) {
  if (npRecord != nullptr && isOn) mpDispatcher->dispatch(convertRecord(*npRecord));
}

void GpsSdkPlayer::notifyParseNmeaSentence(PARSE_NMEA const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseGgaSentence(GPGGA const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseGllSentence(GPGLL const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseGsaSentence(GPGSA const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseGsvSentence(GPGSV const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseRmcSentence(GPRMC const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseVtgSentence(GPVTG const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParseZdaSentence(GPZDA const* npRecord) { dispatch(npRecord); }
void GpsSdkPlayer::notifyParsePubxSentence(PUBX const* npRecord) { dispatch(npRecord); }

void GpsSdkPlayer::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<GpsSdkPlayer> ROUTES[] = {{NMEA_DATA_RECEIVE_MSG, &GpsSdkPlayer::onReceiveNmeaData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::GpsSdkPlayer");
}

void GpsSdkPlayer::onReceiveNmeaData(utl::ThreadRawMsg& nMsg) {
  NmeaDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg)) return;
  if (mLoggerId != NO_LOGGER_ID) Logger::write(mLoggerId, lMsg.mData, lMsg.mSize);
  writeSensorLog(lMsg.mData, lMsg.mSize);
}

void GpsSdkPlayer::writeSensorLog(const unsigned char* npSentence, unsigned int nSize) {
  unsigned char lRecord[RECORD_SIZE] = {};
  const int lSize = mConverter.convertFromNmeaSentence(npSentence, nSize, lRecord, sizeof lRecord);
  if (lSize == -1) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::GpsSdkPlayer::onReceiveNmeaData(): nfw::convertFromNmeaSentence() failed");
  } else if (lSize > static_cast<int>(RECORD_SIZE)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GpsSdkPlayer::onReceiveNmeaData(): lBinaryDataSize Size Over");
  } else if (lSize > 0) {
    SensorSysLoggerManager::write(SENSOR_LOG_GNSS, static_cast<int>(mConverter.getBinaryLogVersion()), lRecord,
                                  static_cast<unsigned int>(lSize));
  }
}

}  // namespace nfw
