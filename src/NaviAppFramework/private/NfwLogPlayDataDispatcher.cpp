#include "NfwLogPlayDataDispatcher.h"

#include <cstdio>

#include "NfwLogPlayListener.h"
#include "NfwLogReader.h"
#include "NfwLogger.h"
#include "NfwThreadMsgProfilerManager.h"

namespace nfw {
namespace {

class ReplayTimerMsg : public utl::TimerMsg {
 public:
  static constexpr const char* NAME = "TimerMsg";
};

const ThreadMsgProfile<ReplayTimerMsg> gProfile(THREAD_MSG_LOG_PLAY);

unsigned int maxMsgDataSize() { return ThreadMsgProfilerManager::profiledSize(THREAD_MSG_LOG_PLAY); }

void nameThread(int nLogTypeId, char (&nName)[ReplayFormat::THREAD_NAME_SIZE]) {
  snprintf(nName, sizeof nName, "%08X_%s", static_cast<unsigned int>(nLogTypeId), "nfw::LogPlayDataDispatcher_Thread");
}

void writeId(int nLogTypeId, char (&nText)[ReplayFormat::ID_TEXT_SIZE]) {
  snprintf(nText, sizeof nText, "0x%08X", static_cast<unsigned int>(nLogTypeId));
}

const ReplayFormat FORMAT = {"LogPlayDataDispatcher",
                             "nfw::LogPlayDataDispatcher",
                             "LogPlayDataDispatcher::mLogDataMemoryPool",
                             ReplayTiming::FIXED,
                             64,
                             maxMsgDataSize,
                             nameThread,
                             writeId};

}  // namespace

LogPlayDataDispatcher::LogPlayDataDispatcher(int nLogTypeId, LogPlayListener* npListener, Logger* npLogger,
                                             unsigned int nMaxLogDataSize)
    : TimedReplay(FORMAT, nLogTypeId, npListener, new LogReader, nMaxLogDataSize, Here::now()),
      mpLogger(npLogger),
      mpPlayListener(npListener) {}

LogPlayDataDispatcher::~LogPlayDataDispatcher() { stop(); }

void LogPlayDataDispatcher::deliver(const LogInfo& nInfo) {
  mpPlayListener->receiveLogPlayData(getLogTypeId(), static_cast<const unsigned char*>(nInfo.mpData), nInfo.mSize);
}

void LogPlayDataDispatcher::tellEnd() { mpLogger->setLogDispatchEnd(this); }

}  // namespace nfw
