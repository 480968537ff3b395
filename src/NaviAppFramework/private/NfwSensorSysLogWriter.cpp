#include "NfwSensorSysLogWriter.h"

#include <cerrno>
#include <cstring>

#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "SensorRecord.h"
#include "SysLogService.h"
#include "Watched.h"
#include "utl/Time.h"

namespace nfw {

bool SensorSysLogWriter::initialize() {
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  const WatchedLock lLock(mSync);
  if (mState != CREATED) return false;
  mState = INITIALIZED;
  return true;
}

bool SensorSysLogWriter::start() {
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  const WatchedLock lLock(mSync);
  if (mState != INITIALIZED || mIsRecording) return false;
  mIsRecording = true;
  return true;
}

void SensorSysLogWriter::shutdown() {
  const WatchedLock lLock(mSync);
  if (mState == SHUT_DOWN) return;
  mState = SHUT_DOWN;
  stop();
}

bool SensorSysLogWriter::isValid(int nLogTypeId, int nLogVersion, const void* npData, unsigned int nSize) {
  const unsigned int lId = static_cast<unsigned int>(nLogTypeId);
  const unsigned int lVersion = static_cast<unsigned int>(nLogVersion);
  if (lId > SensorRecord::MAX_ID) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): Invalid LogTypeId: 0x%02x", lId);
  } else if (lVersion > SensorRecord::MAX_ID) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): Invalid LogVersion: 0x%02x", lVersion);
  } else if (npData == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): Data is null: Id=0x%02x", lId);
  } else if (nSize > SensorRecord::MAX_DATA_SIZE) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): nDataSize is over: %d",
           static_cast<int>(nSize));
  } else {
    return true;
  }
  return false;
}

LogRecordCounts SensorSysLogWriter::getRecordCounts() {
  const WatchedLock lLock(mSync);
  return mTally.get();
}

void SensorSysLogWriter::refuse(LogLoss nReason) {
  const WatchedLock lLock(mSync);
  if (mIsRecording) mTally.refuse(nReason);
}

int SensorSysLogWriter::refused(LogLoss nReason, int nError) {
  mTally.refuse(nReason, nError);
  return FAILURE;
}

int SensorSysLogWriter::write(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize) {
  if (!mControl.start()) return NOT_ACCEPTED;
  const AutoCompleteOperation lComplete(mControl);
  const WatchedLock lLock(mSync);
  if (!mIsRecording) return NOT_ACCEPTED;
  if (!isValid(nLogTypeId, nLogVersion, npData, nSize)) return refused(LOG_LOSS_INVALID);
  const unsigned int lId = static_cast<unsigned int>(nLogTypeId);
  const unsigned int lTick = utl::TimeCounter::getTickTime();
  if (lTick == utl::TimeCounter::FAILURE) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): Can't get tick time: Id=0x%02x", lId);
    return refused(LOG_LOSS_TIME);
  }
  unsigned char lRecord[SensorRecord::MAX_SIZE];
  lRecord[0] = static_cast<unsigned char>(lId | static_cast<unsigned int>(nLogVersion) << 4);
  putUint32(lRecord + SensorRecord::TIME_AT, lTick);
  putUint16(lRecord + SensorRecord::SIZE_AT, nSize);
  memcpy(lRecord + SensorRecord::HEADER_SIZE, npData, nSize);
  errno = 0;
  if (BinaryLogWrite(0, lRecord, SensorRecord::HEADER_SIZE + nSize) != -1) {
    mTally.take(SensorRecord::HEADER_SIZE + nSize);
    return SUCCESS;
  }
  const int lError = errno;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SensorSysLogWriter::write(): Can't Write LogData: Id=0x%02x", lId);
  return refused(LOG_LOSS_WRITE, lError);
}

}  // namespace nfw
