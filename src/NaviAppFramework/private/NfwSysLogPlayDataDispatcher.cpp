#include "NfwSysLogPlayDataDispatcher.h"

#include <cstdio>

#include "NfwSensorSysLoggerManager.h"
#include "NfwSysLogPlayListener.h"
#include "NfwSysLogReader.h"
#include "SensorRecord.h"

namespace nfw {
namespace {

const unsigned int NAME_SIZE = 34;  // a longer id than one digit, which no record can have, cuts the name

unsigned int maxMsgDataSize() { return 128; }

void nameThread(int nLogTypeId, char (&nName)[ReplayFormat::THREAD_NAME_SIZE]) {
  snprintf(nName, NAME_SIZE, "%01x_%s", static_cast<unsigned int>(nLogTypeId), "SysLogPlayDataDispatcher_Thread");
}

void writeId(int nLogTypeId, char (&nText)[ReplayFormat::ID_TEXT_SIZE]) {
  snprintf(nText, sizeof nText, "0x%02x", static_cast<unsigned int>(nLogTypeId));
}

const ReplayFormat FORMAT = {"SysLogPlayDataDispatcher",
                             "nfw::SysLogPlayDataDispatcher",
                             "SysLogPlayDataDispatcher::mLogDataMemoryPool",
                             ReplayTiming::REBASED,
                             128,
                             maxMsgDataSize,
                             nameThread,
                             writeId};

}  // namespace

SysLogPlayDataDispatcher::SysLogPlayDataDispatcher(int nLogTypeId, SysLogPlayListener* npListener,
                                                   SensorSysLoggerManager* npManager)
    : TimedReplay(FORMAT, nLogTypeId, npListener, new SysLogReader, SensorRecord::MAX_DATA_SIZE, Here::now()),
      mpManager(npManager),
      mpPlayListener(npListener) {}

SysLogPlayDataDispatcher::~SysLogPlayDataDispatcher() { stop(); }

void SysLogPlayDataDispatcher::deliver(const LogInfo& nInfo) {
  mpPlayListener->receiveSysLogPlayData(getLogTypeId(), nInfo.mVersion, static_cast<const unsigned char*>(nInfo.mpData),
                                        nInfo.mSize);
}

void SysLogPlayDataDispatcher::tellEnd() { mpManager->setLogDispatchEnd(this); }

}  // namespace nfw
