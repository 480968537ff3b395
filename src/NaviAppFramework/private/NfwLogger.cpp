#include "NfwLogger.h"

#include "FieldMsg.h"
#include "LogQuiet.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwLogPlayDataDispatcher.h"
#include "NfwLogPlayListener.h"
#include "NfwLogPlayer.h"
#include "NfwLogReader.h"
#include "NfwLogRecordEventListener.h"
#include "NfwLogWriter.h"
#include "NfwThreadMsgProfilerManager.h"
#include "OneInstance.h"
#include "PlayMsgs.h"
#include "PlayService.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

const int ATTACH_RECORD_EVENT_LISTENER_MSG = ownMsgId(0x02);
const int DETACH_RECORD_EVENT_LISTENER_MSG = ownMsgId(0x03);
const int NOTIFY_RECORD_START_MSG = ownMsgId(0x08);
const int NOTIFY_RECORD_STOP_MSG = ownMsgId(0x09);

class LogRecordEventListenerMsg : public AttachmentMsg<LogRecordEventListener> {
 public:
  static constexpr const char* NAME = "LogRecordEventListenerMsg";
  using AttachmentMsg<LogRecordEventListener>::AttachmentMsg;
};

const ThreadMsgProfile<LogRecordEventListenerMsg, LogPlayerMsg, AttachLogPlayListenerMsg, DetachLogPlayListenerMsg,
                       LogPathMsg, StopPlayMsg, PlayControlMsg, LogPlayDataDispatcherMsg>
    gProfile(THREAD_MSG_LOGGER);

const PlayFormat FORMAT = {"Logger",
                           "LogPlayDataDispatcher",
                           "nfw::Logger_Thread",
                           THREAD_MSG_LOGGER,
                           "nfw::Logger",
                           "nfw::Logger_AttachPlayer",
                           "nfw::Logger_AttachPlayListener",
                           ownMsgId(0x04),
                           ownMsgId(0x05),
                           ownMsgId(0x06),
                           ownMsgId(0x07),
                           ownMsgId(0x0a),
                           ownMsgId(0x0b),
                           ownMsgId(0x0c),
                           ownMsgId(0x0d),
                           ownMsgId(0x0e)};

class LogPlayService : public PlayService {
 public:
  LogPlayService(Logger* npLogger, unsigned int nMaxPlayerNum, unsigned int nMaxLogTypeNum,
                 unsigned int nMaxLogFieldSize)
      : PlayService(FORMAT, nMaxPlayerNum, nMaxLogTypeNum, Here::now()),
        mpLogger(npLogger),
        mMaxLogFieldSize(nMaxLogFieldSize) {}

 private:
  void tellPlayer(void* npPlayer, PlayNotice nNotice, int nReason) override {
    LogPlayer& lPlayer = *static_cast<LogPlayer*>(npPlayer);
    if (nNotice == PLAY_START) lPlayer.notifyPlayStart();
    if (nNotice == PLAY_STOP) lPlayer.notifyPlayStop();
    if (nNotice == PLAY_END) lPlayer.notifyPlayEnd(nReason);
    if (nNotice == PLAY_SEEK) lPlayer.notifyPlaySeek();
  }
  TimedReplay* createReplay(int nLogTypeId, void* npListener) override {
    return new LogPlayDataDispatcher(nLogTypeId, static_cast<LogPlayListener*>(npListener), mpLogger, mMaxLogFieldSize);
  }
  const RecordFormat& recordFormat() const override { return LogReader::recordFormat(); }

  Logger* const mpLogger;
  const unsigned int mMaxLogFieldSize;
};

OneInstance<Logger>& instance() {
  static OneInstance<Logger>* const lpInstance = new OneInstance<Logger>("nfw::Logger_Instantiation");
  return *lpInstance;
}

}  // namespace

struct Logger::Inside {
  explicit Inside(Logger* npLogger)
      : mWriter(mLogBufferSize, mMaxLogFileSize),
        mPlay(npLogger, mMaxPlayerNum, mMaxLogTypeNum, mMaxLogFieldSize),
        mListeners(mMaxRecordEventListenerNum, false),
        mFieldSize(mMaxLogFieldSize) {}

  void onAttachRecordEventListener(utl::ThreadRawMsg& nMsg);
  void onDetachRecordEventListener(utl::ThreadRawMsg& nMsg);
  void onNotifyRecordStart(utl::ThreadRawMsg& nMsg);
  void onNotifyRecordStop(utl::ThreadRawMsg& nMsg);
  bool post(int nMsgId, const char* npOperation);
  bool attach(LogRecordEventListener* npListener) { return npListener == nullptr || mListeners.attach(npListener); }

  LogWriter mWriter;
  LogPlayService mPlay;
  ListenerList<LogRecordEventListener> mListeners;  // on the logger's thread only
  bool mIsRecordNotified = false;                   // there too: a start was told, once and for all
  ZTSync mAttachSync{"nfw::Logger_AttachRecordEventListener"};
  bool mAttachResult = false;  // written by the handler while the caller waits, under mAttachSync
  const unsigned int mFieldSize;
  ZTSync mSync{"nfw::Logger"};
  char mRecordingDir[LOG_PATH_SIZE] NFW_GUARDED_BY(mSync) = {};
};

// --- sizes and life

unsigned int Logger::mMaxRecordEventListenerNum = 0;
unsigned int Logger::mMaxPlayerNum = 0;
unsigned int Logger::mMaxLogTypeNum = 0;
unsigned int Logger::mMaxLogFieldSize = 0;
unsigned int Logger::mLogBufferSize = 0;
unsigned int Logger::mMaxLogFileSize = 0;

void Logger::initializeMaxRecordEventListenerNum(unsigned int nValue) { mMaxRecordEventListenerNum = nValue; }
void Logger::initializeMaxPlayerNum(unsigned int nValue) { mMaxPlayerNum = nValue; }
void Logger::initializeMaxLogTypeNum(unsigned int nValue) { mMaxLogTypeNum = nValue; }
void Logger::initializeMaxLogFieldSize(unsigned int nValue) { mMaxLogFieldSize = nValue; }
void Logger::initializeLogBufferSize(unsigned int nValue) { mLogBufferSize = nValue; }
void Logger::initializeMaxLogFileSize(unsigned int nValue) { mMaxLogFileSize = nValue; }

Logger* Logger::get() {
  return instance().get([] { return new Logger; });
}

void Logger::destroy() { instance().destroy(); }

Logger::Logger() : mpInside(new Inside(this)) {}

Logger::~Logger() = default;

bool Logger::end() {
  shutdown();
  const bool lHasWriterEnded = mpInside->mWriter.hasEnded();
  if (mpInside->mPlay.hasEnded()) return lHasWriterEnded;
  mpInside->mListeners.mute();
  return false;
}

bool Logger::initialize() {
  return mpInside->mPlay.initialize(this, [this] {
    if (mpInside->mWriter.initialize()) return true;
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Logger::initialize(): Can't initialize LogWriter");
    return false;
  });
}

void Logger::shutdown() {
  const bool lIsDone = mpInside->mPlay.shutdown([this] {
    mpInside->mWriter.stop();
    mpInside->mWriter.shutdown();
  });
  if (!lIsDone || mpInside->mListeners.size() == 0) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "Logger::shutdown(): LogRecordEventListener remain: Count=%u",
         mpInside->mListeners.size());
}

// --- records

// The logger at work on this thread does not log about itself into the recording.
void Logger::write(int nLogTypeId, const void* npData, unsigned int nSize) {
  if (LogQuiet::isQuiet()) return;
  instance().use([&](Logger& nLogger) { nLogger.writeImp(nLogTypeId, npData, nSize); });
}

void Logger::writeImp(int nLogTypeId, const void* npData, unsigned int nSize) {
  const LogQuiet lQuiet;
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (!lOperation) return;
  if (nSize <= mpInside->mFieldSize) {
    mpInside->mWriter.write(nLogTypeId, npData, nSize);
    return;
  }
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "Logger::writeImp(): Invalid log data size: DataSize=%u Byte Max=%u Byte Id=0x%08X", nSize,
         mpInside->mFieldSize, static_cast<unsigned int>(nLogTypeId));
  mpInside->mWriter.refuse(LOG_LOSS_INVALID);
}

void Logger::flush() {
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (lOperation) mpInside->mWriter.flush();
}

bool Logger::setSyncInterval(unsigned int nIntervalMs) { return mpInside->mWriter.setSyncInterval(nIntervalMs); }

void Logger::setMaxFileTime(unsigned int nLimitMs, bool nIsAligned) {
  mpInside->mWriter.setMaxFileTime(nLimitMs, nIsAligned);
}

bool Logger::startRecord(const char* npDirectory, const char* npFilePrefix, const char* npBackupDirectory) {
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (!lOperation || !mpInside->mWriter.start(npDirectory, npFilePrefix, npBackupDirectory)) return false;
  {
    const WatchedLock lLock(mpInside->mSync);
    if (!utl::copyStr(mpInside->mRecordingDir, LOG_PATH_SIZE, npDirectory)) {
      APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Logger::startRecordInternal(): Can't copy recording directory: Dir=%s",
             npDirectory);
    }
  }
  return mpInside->post(NOTIFY_RECORD_START_MSG, "startRecord");
}

bool Logger::stopRecord() {
  const PlayService::Operation lOperation(mpInside->mPlay);
  if (!lOperation.isStarted()) return false;
  mpInside->mWriter.stop();
  return mpInside->post(NOTIFY_RECORD_STOP_MSG, "stopRecord");
}

bool Logger::getRecordingDir(char* npBuffer, unsigned int nSize) {
  const WatchedLock lLock(mpInside->mSync);
  if (utl::copyStr(npBuffer, nSize, mpInside->mRecordingDir)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Logger::getRecordingDir(): Can't copy path: Dir=%s", mpInside->mRecordingDir);
  return false;
}

bool Logger::isRecording() const { return mpInside->mWriter.isRecording(); }
LogRecordCounts Logger::getRecordCounts() const { return mpInside->mWriter.getRecordCounts(); }
LogBackup Logger::getBackup() const { return mpInside->mWriter.getBackup(); }

// --- record event listeners

bool Logger::attachRecordEventListener(LogRecordEventListener* npListener) {
  PlayService& lPlay = mpInside->mPlay;
  if (lPlay.getState() != PlayService::INITIALIZED) return false;
  if (lPlay.requests().isOwnThread()) return mpInside->attach(npListener);
  return lPlay.requests().attach(mpInside->mAttachSync,
                                 LogRecordEventListenerMsg(ATTACH_RECORD_EVENT_LISTENER_MSG, npListener),
                                 mpInside->mAttachResult, "attachRecordEventListener");
}

bool Logger::detachRecordEventListener(LogRecordEventListener* npListener) {
  ServiceRequests& lRequests = mpInside->mPlay.requests();
  if (!lRequests.isOwnThread()) {
    const unsigned int lLastNumber = mpInside->mListeners.getLastNumber();
    return lRequests.detach(LogRecordEventListenerMsg(DETACH_RECORD_EVENT_LISTENER_MSG, npListener, lLastNumber),
                            "detachRecordEventListener");
  }
  mpInside->mListeners.detach(npListener);
  return true;
}

void Logger::Inside::onAttachRecordEventListener(utl::ThreadRawMsg& nMsg) {
  LogRecordEventListenerMsg lMsg;
  mAttachResult = lMsg.restoreFrom(nMsg) && attach(lMsg.mpObject);
}

void Logger::Inside::onDetachRecordEventListener(utl::ThreadRawMsg& nMsg) {
  LogRecordEventListenerMsg lMsg;
  if (lMsg.restoreFrom(nMsg)) mListeners.detach(lMsg.mpObject, lMsg.mLastNumber);
}

void Logger::Inside::onNotifyRecordStart(utl::ThreadRawMsg& /*nMsg*/) {
  mListeners.forEach([](LogRecordEventListener& nListener) { nListener.notifyRecordStart(); });
  mIsRecordNotified = true;
}

// The flag stays: only a stop without any start before it is not told.
void Logger::Inside::onNotifyRecordStop(utl::ThreadRawMsg& /*nMsg*/) {
  if (!mIsRecordNotified) return;
  mListeners.forEach([](LogRecordEventListener& nListener) { nListener.notifyRecordStop(); });
}

bool Logger::Inside::post(int nMsgId, const char* npOperation) {
  if (watched([&] { return mPlay.thread().postMsg(nMsgId); })) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "Logger::%s(): Can't post thread", npOperation);
  return false;
}

// --- playing

bool Logger::attachPlayer(LogPlayer* npPlayer) { return mpInside->mPlay.attachPlayer(npPlayer); }
bool Logger::detachPlayer(LogPlayer* npPlayer) { return mpInside->mPlay.detachPlayer(npPlayer); }
bool Logger::attachPlayListener(int nLogTypeId, LogPlayListener* npListener) {
  return mpInside->mPlay.attachPlayListener(nLogTypeId, npListener);
}
bool Logger::detachPlayListener(LogPlayListener* npListener) { return mpInside->mPlay.detachPlayListener(npListener); }

bool Logger::startPlay(const char* npPath) { return mpInside->mPlay.startPlay(npPath); }
bool Logger::startPlay(const char* const* nppPaths, unsigned int nNum) {
  return mpInside->mPlay.startPlay(nppPaths, nNum);
}
bool Logger::stopPlay() { return mpInside->mPlay.stopPlay(); }
bool Logger::pausePlay() { return mpInside->mPlay.pausePlay(); }
bool Logger::resumePlay() { return mpInside->mPlay.resumePlay(); }
bool Logger::stepPlay() { return mpInside->mPlay.stepPlay(); }
bool Logger::setPlayRate(unsigned int nPermille) { return mpInside->mPlay.setPlayRate(nPermille); }
bool Logger::seekPlay(unsigned int nOffsetMs) { return mpInside->mPlay.seekPlay(nOffsetMs); }
LogPlayPosition Logger::getPlayPosition() const { return mpInside->mPlay.getPlayPosition(); }
bool Logger::getPlayingDir(char* npBuffer, unsigned int nSize) {
  return mpInside->mPlay.getPlayingDir(npBuffer, nSize);
}
bool Logger::isPlaying() const { return mpInside->mPlay.isPlaying(); }
void Logger::setLogDispatchEnd(LogPlayDataDispatcher* npDispatcher) { mpInside->mPlay.setLogDispatchEnd(npDispatcher); }

void Logger::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<Inside> ROUTES[] = {
      {ATTACH_RECORD_EVENT_LISTENER_MSG, &Inside::onAttachRecordEventListener},
      {DETACH_RECORD_EVENT_LISTENER_MSG, &Inside::onDetachRecordEventListener},
      {NOTIFY_RECORD_START_MSG, &Inside::onNotifyRecordStart},
      {NOTIFY_RECORD_STOP_MSG, &Inside::onNotifyRecordStop},
  };
  int lMsgId = 0;
  if (nMsg.getMsgId(&lMsgId) && mpInside->mPlay.receive(lMsgId, nMsg)) return;
  routeMsg(*mpInside, ROUTES, nMsg, "Logger");
}

}  // namespace nfw
