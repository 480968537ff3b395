#include "NfwGnssLoggerPlayer.h"

#include "BytesMsg.h"
#include "GatheredMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"

namespace nfw {
namespace {

const int NMEA_DATA_RECEIVE_MSG = ownMsgId(0x02);

class NmeaDataReceiveMsg : public GatheredMsg<BytesMsg<130>> {
 public:
  static constexpr const char* NAME = "NmeaDataReceiveMsg";
  using GatheredMsg<BytesMsg<130>>::GatheredMsg;
};

const ThreadMsgProfile<NmeaDataReceiveMsg> gProfile(THREAD_MSG_GNSS);

}  // namespace

GnssLoggerPlayer::GnssLoggerPlayer(GnssDataDispatcher* npDispatcher, utl::MsgDrivenSharedThread* npThread,
                                   int nLoggerId)
    : mpThread(npThread), mReplay(*npDispatcher), mLoggerId(nLoggerId) {}

bool GnssLoggerPlayer::initialize() {
  if (mLoggerId == NO_LOGGER_ID || Logger::get()->attachPlayListener(mLoggerId, this)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::GnssLoggerinitialize() nfw::attachPlayListener() false");
  return false;
}

void GnssLoggerPlayer::finalize() {
  if (mLoggerId != NO_LOGGER_ID) Logger::get()->detachPlayListener(this);
}

void GnssLoggerPlayer::receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) {
  if (nLogTypeId != mLoggerId || !isOn || !mpThread->isRunning() || nSize > NmeaDataReceiveMsg::DATA_MAX) return;
  const NmeaDataReceiveMsg lMsg(mGeneration, NMEA_DATA_RECEIVE_MSG, npData, nSize);
  postRecord(*mpThread, this, lMsg, "nfw::GnssLoggerPlayer::receiveLogPlayData()");
}

void GnssLoggerPlayer::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<GnssLoggerPlayer> ROUTES[] = {{NMEA_DATA_RECEIVE_MSG, &GnssLoggerPlayer::onReceiveNmeaData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::GnssLoggerPlayer");
}

void GnssLoggerPlayer::onReceiveNmeaData(utl::ThreadRawMsg& nMsg) {
  NmeaDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || lMsg.mSize > NmeaDataReceiveMsg::DATA_MAX) return;
  if (isFirstOf(lMsg.mGeneration)) clearSentenceData();
  unsigned char lText[NmeaDataReceiveMsg::DATA_MAX + 1] = {};  // terminated, also when it is full
  memcpy(lText, lMsg.mData, lMsg.mSize);
  mReplay.play(lText, lMsg.mSize);
}

}  // namespace nfw
