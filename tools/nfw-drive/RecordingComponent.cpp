#include "RecordingComponent.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "DriveLog.h"
#include "LogIds.h"
#include "NfwLogger.h"
#include "NfwSensorSysLogger.h"
#include "NfwSensorSysLoggerManager.h"
#include "RunNote.h"
#include "SysLogServiceHost.h"

namespace drive {

namespace {

void writeNote(std::string nNote) {
  nfw::Logger::write(LOG_ID_RUN_NOTE, nNote.data(), static_cast<unsigned int>(nNote.size()));
}

void writeSensorNote(std::string nNote) {
  nfw::SensorSysLoggerManager::write(SENSOR_ID_RUN_NOTE, 0, nNote.data(), static_cast<unsigned int>(nNote.size()));
}

const char* orNull(const std::string& nText) { return nText.empty() ? nullptr : nText.c_str(); }

}  // namespace

int RecordingComponent::initializeBeforeQuickBootImp() {
  if (nfw::Logger::get()->initialize() && nfw::SensorSysLogger::get()->initialize()) return nfw::PHASE_DONE;
  mFailure.note(EXIT_RUNTIME, "the logs cannot be started");
  return nfw::PHASE_FAILED;
}

int RecordingComponent::initializeAfterQuickBootImp() {
  return initializeThread(&mThread) ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

int RecordingComponent::startImp() {
  if (mRecord.isWanted()) mTimerId = setTimer(FLUSH_MS, 0, 0, 0);
  return startLog() && startSensorLog() ? nfw::PHASE_DONE : nfw::PHASE_FAILED;
}

bool RecordingComponent::startLog() {
  if (mRecord.mDirectory.empty()) return true;
  std::error_code lError;
  if (!std::filesystem::is_directory(mRecord.mDirectory, lError)) {
    mFailure.note(EXIT_USAGE, mRecord.mDirectory + ": no directory to record into");
    return false;
  }
  if (!nfw::Logger::get()->startRecord(mRecord.mDirectory.c_str(), mRecord.mPrefix.c_str(), orNull(mRecord.mBackup))) {
    mFailure.note(EXIT_RUNTIME, mRecord.mDirectory + ": no recording can be begun there");
    return false;
  }
  writeNote(runnote::BEGIN);
  return true;
}

bool RecordingComponent::startSensorLog() {
  if (mRecord.mSensorFile.empty()) return true;
  if (!syslogservice::setBinaryLogFile(mRecord.mSensorFile.c_str())) {
    mFailure.note(EXIT_USAGE, mRecord.mSensorFile + ": " + std::strerror(errno));
    return false;
  }
  if (!nfw::SensorSysLogger::get()->startRecord()) {
    mFailure.note(EXIT_RUNTIME, mRecord.mSensorFile + ": no recording can be begun there");
    return false;
  }
  writeSensorNote(runnote::BEGIN);
  return true;
}

// What listeners received is known by now, and nothing comes any more.
int RecordingComponent::finalizeImp() {
  if (mTimerId > 0) killTimer(mTimerId, 1);
  writeEndNotes();
  nfw::SensorSysLogger::get()->stopRecord();
  nfw::Logger::get()->stopRecord();
  nfw::SensorSysLogger::get()->shutdown();
  nfw::SensorSysLogger::destroy();
  nfw::Logger::get()->shutdown();
  nfw::Logger::destroy();
  syslogservice::setBinaryLogFile(nullptr);
  return nfw::PHASE_DONE;
}

void RecordingComponent::writeEndNotes() {
  const StreamTally lDelivered = mProgress.delivered();
  if (!mRecord.mDirectory.empty()) writeNote(runnote::end(lDelivered));
  if (mRecord.mSensorFile.empty()) return;
  StreamTally lStored = mProgress.mStored.get();  // sentences as their records give them back
  lStored.mDeadReckoning = lDelivered.mDeadReckoning;
  writeSensorNote(runnote::end(lStored));
}

void RecordingComponent::receiveMsg(int, utl::ThreadRawMsg&) { nfw::Logger::get()->flush(); }

void RecordingComponent::beginIn(const std::string& nDirectory) {
  const bool lIsBegun =
      nfw::Logger::get()->startRecord(nDirectory.c_str(), mRecord.mPrefix.c_str(), orNull(mRecord.mBackup));
  if (lIsBegun) {
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "recording into %s", nDirectory.c_str());
  } else {
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_ERROR, "%s: no recording can be begun there", nDirectory.c_str());
  }
}

void RecordingComponent::endIn() {
  if (!nfw::Logger::get()->isRecording()) return;
  nfw::Logger::get()->stopRecord();
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "recording has ended: the medium is gone");
}

}  // namespace drive
