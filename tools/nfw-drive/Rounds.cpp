#include "Rounds.h"

#include "Format.h"
#include "NfwDeadReckoning.h"
#include "NfwDeadReckoningNmeaDataListener.h"
#include "NfwGnss.h"
#include "NfwLogPlayer.h"
#include "NfwLogger.h"
#include "NfwNmeaDataListener.h"
#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayer.h"

namespace drive {

namespace {

struct NoSentences : nfw::NmeaDataListener {
  void onNotifyNmeaData(unsigned char const*, unsigned int) override {}
};
struct NoReports : nfw::DeadReckoningNmeaDataListener {
  void onNotifyDeadReckoningNmeaData(const unsigned char*, unsigned int) override {}
};

struct NoLog : nfw::LogPlayer {
  void notifyPlayStart() override {}
  void notifyPlayStop() override {}
  void notifyPlayEnd(int) override {}
};
struct NoSensorLog : nfw::SysLogPlayer {
  void notifyPlayStart() override {}
  void notifyPlayStop() override {}
  void notifyPlayEnd() override {}
};

// An attach waits for its turn on the thread of the service or log: no call of before is under way then. It goes before
// what is queued.
void awaitServices() {
  NoSentences lSentences;
  NoReports lReports;
  NoLog lLog;
  NoSensorLog lSensorLog;
  nfw::Logger::get()->attachPlayer(&lLog);
  nfw::Logger::get()->detachPlayer(&lLog);
  nfw::SensorSysLoggerManager::get()->attachPlayer(&lSensorLog);
  nfw::SensorSysLoggerManager::get()->detachPlayer(&lSensorLog);
  nfw::Gnss::get()->attachNmeaDataListener(&lSentences);
  nfw::Gnss::get()->detachNmeaDataListener(&lSentences);
  nfw::DeadReckoning::get()->attachDeadReckoningNmeaDataListener(&lReports);
  nfw::DeadReckoning::get()->detachDeadReckoningNmeaDataListener(&lReports);
}

}  // namespace

void Rounds::begin() {
  if (mReplay.mToMs) mProgress.limit(&mRecorded.get());
}

void Rounds::spoil() {
  mIsSpoilt = true;
  mProgress.limit(nullptr);
  mProgress.awaitRound(nullptr);
}

// Without a further round nothing is compared before the listeners have gone.
bool Rounds::next() {
  if (!mReplay.mIsLooped) return false;
  bool lIsSame = true;
  if (!mIsSpoilt) mRecorded.compare(mProgress.delivered(), &lIsSame);
  if (!lIsSame) return false;
  const bool lWasSpoilt = mIsSpoilt;
  mPlayback.pause();
  if (!mPlayback.seek(mReplay.mFromMs)) return false;
  mProgress.awaitRound(&mRecorded.get());
  awaitServices();
  ++(lWasSpoilt ? mSpoilt : mSame);
  beginAnew();
  mEvents.discard(Events::REPLAY_ENDED);  // what was told of the last round; the logs have no more to tell of it
  mPlayback.resume();
  return true;
}

void Rounds::beginAnew() {
  mProgress.beginRound();
  mIsSpoilt = false;
  begin();
}

std::string Rounds::verdict(bool nIsWhole, bool* npIsSame) const {
  std::string lLast = mIsSpoilt ? "sought in: not compared" : "ended early: not compared";
  if (nIsWhole && !mIsSpoilt) lLast = mRecorded.compare(mProgress.delivered(), npIsSame);
  if (mSame + mSpoilt == 0) return lLast;
  std::string lText = fmt::format("{} whole round{} the same as the recording", mSame, mSame == 1 ? "" : "s");
  if (mSpoilt > 0) lText += fmt::format(", {} not compared: sought in", mSpoilt);
  return lText + "; the last one " + lLast;
}

}  // namespace drive
