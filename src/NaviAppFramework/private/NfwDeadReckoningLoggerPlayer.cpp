#include "NfwDeadReckoningLoggerPlayer.h"

#include "BytesMsg.h"
#include "GatheredMsg.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwNmeaDataParser.h"
#include "NfwThreadMsgProfilerManager.h"
#include "PostRecord.h"

namespace nfw {
namespace {

const int NMEA_DATA_RECEIVE_MSG = ownMsgId(0x02);

class NmeaDataReceiveMsg : public GatheredMsg<BytesMsg<NmeaSentenceData::MAX_TEXT>> {
 public:
  static constexpr const char* NAME = "NmeaDataReceiveMsg";
  using GatheredMsg<BytesMsg<NmeaSentenceData::MAX_TEXT>>::GatheredMsg;
};

const ThreadMsgProfile<NmeaDataReceiveMsg> gProfile(THREAD_MSG_DEAD_RECKONING);

}  // namespace

DeadReckoningLoggerPlayer::DeadReckoningLoggerPlayer(DeadReckoningDataDispatcher* npDispatcher,
                                                     utl::MsgDrivenSharedThread* npThread, int nLoggerId)
    : mpThread(npThread), mpDispatcher(npDispatcher), mLoggerId(nLoggerId) {}

bool DeadReckoningLoggerPlayer::initialize() {
  if (mLoggerId == NO_LOGGER_ID || Logger::get()->attachPlayListener(mLoggerId, this)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::DeadReckoningLoggerPlayer:initialize() nfw::attachPlayListener() false");
  return false;
}

void DeadReckoningLoggerPlayer::finalize() {
  if (mLoggerId != NO_LOGGER_ID) Logger::get()->detachPlayListener(this);
}

void DeadReckoningLoggerPlayer::receiveLogPlayData(int nLogTypeId, const unsigned char* npData, unsigned int nSize) {
  if (nLogTypeId != mLoggerId || !isOn || !mpThread->isRunning() || nSize > NmeaDataReceiveMsg::DATA_MAX) return;
  const NmeaDataReceiveMsg lMsg(mGeneration, NMEA_DATA_RECEIVE_MSG, npData, nSize);
  postRecord(*mpThread, this, lMsg, "nfw::DeadReckoningLoggerPlayer::receiveLogPlayData()");
}

void DeadReckoningLoggerPlayer::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<DeadReckoningLoggerPlayer> ROUTES[] = {
      {NMEA_DATA_RECEIVE_MSG, &DeadReckoningLoggerPlayer::onReceiveDeadReckoningNmeaData}};
  routeMsg(*this, ROUTES, nMsg, "nfw::DeadReckoningLoggerPlayer");
}

void DeadReckoningLoggerPlayer::onReceiveDeadReckoningNmeaData(utl::ThreadRawMsg& nMsg) {
  NmeaDataReceiveMsg lMsg;
  if (!lMsg.restoreFrom(nMsg) || lMsg.mSize > NmeaDataReceiveMsg::DATA_MAX) return;
  if (isFirstOf(lMsg.mGeneration)) clearSentenceData();
  const int lType = NmeaDataParser::analyzeNmeaSentenceType(reinterpret_cast<const char*>(lMsg.mData), lMsg.mSize);
  NmeaSentenceData* const lpSlot = slotFor(lType);
  if (lpSlot == nullptr) return;
  memcpy(lpSlot->mText, lMsg.mData, lMsg.mSize);
  lpSlot->mLength = lMsg.mSize;
  if (lType != NMEA_PUBX) return;
  mIsOpen = false;
  mpDispatcher->dispatch(mSet);
}

void DeadReckoningLoggerPlayer::clearSentenceData() {
  mSet.clear();
  mIsOpen = false;
}

/// The place of a sentence in the set under way; null when there is none for it.
NmeaSentenceData* DeadReckoningLoggerPlayer::slotFor(int nSentenceType) {
  if (nSentenceType == NMEA_RMC) {
    mSet.clear();  // one that was not closed is lost
    mIsOpen = true;
    return &mSet.mRmc;
  }
  if (!mIsOpen) return nullptr;
  switch (nSentenceType) {
    case NMEA_VTG:
      return &mSet.mVtg;
    case NMEA_GGA:
      return &mSet.mGga;
    case NMEA_GSA:
      return mSet.mGsaCount < DeadReckoningNmeaSentence::MAX_GSA ? &mSet.mGsa[mSet.mGsaCount++] : nullptr;
    case NMEA_GSV:
      return mSet.mGsvCount < DeadReckoningNmeaSentence::MAX_GSV ? &mSet.mGsv[mSet.mGsvCount++] : nullptr;
    case NMEA_PUBX:
      return &mSet.mPubx;
    default:
      return nullptr;
  }
}

}  // namespace nfw
