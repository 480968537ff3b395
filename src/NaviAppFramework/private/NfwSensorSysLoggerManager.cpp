#include "NfwSensorSysLoggerManager.h"

#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogger.h"
#include "NfwSensorSysLogWriter.h"
#include "NfwSysLogPlayDataDispatcher.h"
#include "NfwSysLogPlayListener.h"
#include "NfwSysLogPlayer.h"
#include "NfwSysLogReader.h"
#include "NfwThreadMsgProfilerManager.h"
#include "OneInstance.h"
#include "PlayMsgs.h"
#include "PlayService.h"

namespace nfw {
namespace {

const unsigned int MAX_DATA_SIZE = 1121;  // tighter than the file's 1200: kept so

const ThreadMsgProfile<SysLogPlayerMsg, AttachLogPlayListenerMsg, DetachSysLogPlayListenerMsg, SysLogPathMsg,
                       StopPlayMsg, PlayControlMsg, SysLogPlayDataDispatcherMsg>
    gProfile(THREAD_MSG_SENSOR_SYS_LOGGER);

const PlayFormat FORMAT = {"SensorSysLoggerManager",
                           "SysLogPlayDataDispatcher",
                           "Sensor_SysLogger_Thread",
                           THREAD_MSG_SENSOR_SYS_LOGGER,
                           "SensorSysLoggerManager",
                           "SYsLogger_AttachPlayer",
                           "SysLogger_AttachPlayListener",
                           ownMsgId(0x03),
                           ownMsgId(0x04),
                           ownMsgId(0x05),
                           ownMsgId(0x06),
                           ownMsgId(0x07),
                           ownMsgId(0x08),
                           ownMsgId(0x09),
                           ownMsgId(0x0a),
                           ownMsgId(0x0b)};

class SysLogPlayService : public PlayService {
 public:
  explicit SysLogPlayService(SensorSysLoggerManager* npManager)
      : PlayService(FORMAT, Logger::mMaxPlayerNum, Logger::mMaxLogTypeNum, Here::now()), mpManager(npManager) {}

 private:
  void tellPlayer(void* npPlayer, PlayNotice nNotice, int /*nReason*/) override {
    SysLogPlayer& lPlayer = *static_cast<SysLogPlayer*>(npPlayer);
    if (nNotice == PLAY_START) lPlayer.notifyPlayStart();
    if (nNotice == PLAY_STOP) lPlayer.notifyPlayStop();
    if (nNotice == PLAY_END) lPlayer.notifyPlayEnd();
    if (nNotice == PLAY_SEEK) lPlayer.notifyPlaySeek();
  }
  TimedReplay* createReplay(int nLogTypeId, void* npListener) override {
    return new SysLogPlayDataDispatcher(nLogTypeId, static_cast<SysLogPlayListener*>(npListener), mpManager);
  }
  const RecordFormat& recordFormat() const override { return SysLogReader::recordFormat(); }

  SensorSysLoggerManager* const mpManager;
};

OneInstance<SensorSysLoggerManager>& instance() {
  static OneInstance<SensorSysLoggerManager>* const lpInstance =
      new OneInstance<SensorSysLoggerManager>("SensorSysLoggerManager_Instantiation");
  return *lpInstance;
}

}  // namespace

struct SensorSysLoggerManager::Inside {
  explicit Inside(SensorSysLoggerManager* npManager) : mPlay(npManager) {}

  SensorSysLogWriter mWriter;
  SysLogPlayService mPlay;
};

SensorSysLoggerManager* SensorSysLoggerManager::get() {
  return instance().get([] { return new SensorSysLoggerManager; });
}

void SensorSysLoggerManager::destroy() { instance().destroy(); }

SensorSysLoggerManager::SensorSysLoggerManager() : mpInside(new Inside(this)) {}

SensorSysLoggerManager::~SensorSysLoggerManager() = default;

bool SensorSysLoggerManager::end() {
  shutdown();
  return mpInside->mPlay.hasEnded();
}

bool SensorSysLoggerManager::initialize() {
  return mpInside->mPlay.initialize(this, [this] { return mpInside->mWriter.initialize(); });
}

void SensorSysLoggerManager::shutdown() {
  mpInside->mPlay.shutdown([this] { mpInside->mWriter.shutdown(); });
}

bool SensorSysLoggerManager::startRecord() {
  const PlayService::Operation lOperation(mpInside->mPlay);
  return lOperation && mpInside->mWriter.start();
}

bool SensorSysLoggerManager::stopRecord() {
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (lOperation) mpInside->mWriter.stop();
  return static_cast<bool>(lOperation);
}

bool SensorSysLoggerManager::isRecording() const { return mpInside->mWriter.isRecording(); }
LogRecordCounts SensorSysLoggerManager::getRecordCounts() const { return mpInside->mWriter.getRecordCounts(); }

void SensorSysLoggerManager::write(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize) {
  instance().use([&](SensorSysLoggerManager& nManager) { nManager.writeImp(nLogTypeId, nLogVersion, npData, nSize); });
}

void SensorSysLoggerManager::writeImp(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize) {
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (!lOperation) return;
  if (nSize > MAX_DATA_SIZE) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "SensorSysLoggerManager::writeImp(): Invalid log data size: DataSize=%u Byte Id=0x%02x Version=0x%02x",
           nSize, static_cast<unsigned int>(nLogTypeId), static_cast<unsigned int>(nLogVersion));
    mpInside->mWriter.refuse(LOG_LOSS_INVALID);
    return;
  }
  if (mpInside->mWriter.write(nLogTypeId, nLogVersion, npData, nSize) != SensorSysLogWriter::FAILURE) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "SensorSysLoggerManager::writeImp(): mpSensorSysLogWriter->write() is RESULT_FAILURE");
}

bool SensorSysLoggerManager::attachPlayer(SysLogPlayer* npPlayer) { return mpInside->mPlay.attachPlayer(npPlayer); }
bool SensorSysLoggerManager::detachPlayer(SysLogPlayer* npPlayer) { return mpInside->mPlay.detachPlayer(npPlayer); }
bool SensorSysLoggerManager::attachPlayListener(int nLogTypeId, SysLogPlayListener* npListener) {
  return mpInside->mPlay.attachPlayListener(nLogTypeId, npListener);
}
bool SensorSysLoggerManager::detachPlayListener(SysLogPlayListener* npListener) {
  return mpInside->mPlay.detachPlayListener(npListener);
}

bool SensorSysLoggerManager::startPlay(const char* npPath) { return mpInside->mPlay.startPlay(npPath); }
bool SensorSysLoggerManager::startPlay(const char* const* nppPaths, unsigned int nNum) {
  return mpInside->mPlay.startPlay(nppPaths, nNum);
}
bool SensorSysLoggerManager::stopPlay() { return mpInside->mPlay.stopPlay(); }
bool SensorSysLoggerManager::pausePlay() { return mpInside->mPlay.pausePlay(); }
bool SensorSysLoggerManager::resumePlay() { return mpInside->mPlay.resumePlay(); }
bool SensorSysLoggerManager::stepPlay() { return mpInside->mPlay.stepPlay(); }
bool SensorSysLoggerManager::setPlayRate(unsigned int nPermille) { return mpInside->mPlay.setPlayRate(nPermille); }
bool SensorSysLoggerManager::seekPlay(unsigned int nOffsetMs) { return mpInside->mPlay.seekPlay(nOffsetMs); }
LogPlayPosition SensorSysLoggerManager::getPlayPosition() const { return mpInside->mPlay.getPlayPosition(); }
bool SensorSysLoggerManager::isPlaying() const { return mpInside->mPlay.isPlaying(); }
void SensorSysLoggerManager::setLogDispatchEnd(SysLogPlayDataDispatcher* npDispatcher) {
  mpInside->mPlay.setLogDispatchEnd(npDispatcher);
}

void SensorSysLoggerManager::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  int lMsgId = 0;
  if (!readMsgId(nMsg, "SensorSysLoggerManager", "receiveMsg", &lMsgId)) return;
  if (!mpInside->mPlay.receive(lMsgId, nMsg)) logUnknownMsg("SensorSysLoggerManager", "receiveMsg", lMsgId);
}

}  // namespace nfw
