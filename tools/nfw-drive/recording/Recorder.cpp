#include "Recorder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "CutFiles.h"
#include "DriveLog.h"
#include "KeptFiles.h"
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

const unsigned int SENSOR_FLUSH_MS = 2000;

const char* orNull(const std::string& nText) { return nText.empty() ? nullptr : nText.c_str(); }

void tell(const std::string& nText) {
  if (!nText.empty()) APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_ERROR, "%s", nText.c_str());
}

}  // namespace

bool Recorder::start(Worker::Task nOnReady) {
  if (!mRecord.mDirectory.empty()) mLog.want(mRecord.mDirectory);
  if (!mRecord.mSensorFile.empty()) mSensorLog.want(mRecord.mSensorFile);
  if (!mRecord.mDrive.empty()) mLog.want({});
  if (!mWorker.start("drive_Recorder", FLUSH_TIME, [this] { look(); })) return false;
  mWorker.post([this, lOnReady = std::move(nOnReady)] { begin(lOnReady); });
  return true;
}

// No record is taken while a backup is made: nothing else begins before.
void Recorder::begin(const Worker::Task& nOnReady) {
  if (startLog() && startSensorLog()) awaitBackup();
  if (!mRecord.mDirectory.empty()) writeNote(runnote::BEGIN);
  nOnReady();
}

bool Recorder::startLog() {
  if (mRecord.mDirectory.empty()) return true;
  std::error_code lError;
  if (!std::filesystem::is_directory(mRecord.mDirectory, lError)) {
    mFailure.note(EXIT_USAGE, mRecord.mDirectory + ": no directory to record into");
    return false;
  }
  mHasBegun = startRecord(mRecord.mDirectory);
  if (!mHasBegun) mFailure.note(EXIT_RUNTIME, mRecord.mDirectory + ": no recording can be begun there");
  return mHasBegun;
}

bool Recorder::startRecord(const std::string& nDirectory) {
  nfw::Logger& lLogger = *nfw::Logger::get();
  lLogger.setSyncInterval(mRecord.mSyncMs);
  lLogger.setMaxFileTime(mRecord.mMaxFileTimeMs, mRecord.mIsAligned);
  mendIn(nDirectory, mRecord.mPrefix);
  keepWithin(nDirectory);
  if (lLogger.startRecord(nDirectory.c_str(), mRecord.mPrefix.c_str(), orNull(mRecord.mBackup))) return true;
  mLimits.end();
  return false;
}

void Recorder::mendIn(const std::string& nDirectory, const std::string& nPrefix) const {
  CutOff lCut = closeCutFiles(nDirectory, nPrefix);
  const CutOff lKept = closeCutFiles(nDirectory + "/kept", nPrefix);  // where they were moved, or have this name alone
  lCut.mFiles += lKept.mFiles;
  lCut.mBytes += lKept.mBytes;
  if (lCut.mFiles == 0) return;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING,
         "an earlier recording was cut within a record: %u file%s shortened to the last whole one, by %llu bytes",
         lCut.mFiles, lCut.mFiles == 1 ? "" : "s", static_cast<unsigned long long>(lCut.mBytes));
}

void Recorder::keepWithin(const std::string& nDirectory) {
  if (mLimits.begin(nDirectory, mRecord.mPrefix, mRecord)) return;
  mLog.noteFault("the limits of its files cannot be kept");
}

// What came since they looked last counts too: when the loggers, which sync the last files, have let go of them.
void Recorder::keepWithinForGood() {
  mLog.noteDeleted(mLimits.endForGood());
  mSensorLog.noteDeleted(mSensorLimits.endForGood());
}

bool Recorder::startSensorLog() {
  if (mRecord.mSensorFile.empty()) return true;
  syslogservice::setBinaryLogSyncInterval(mRecord.mSyncMs);
  if (!setSensorFile()) {
    mFailure.note(EXIT_USAGE, mRecord.mSensorFile + ": " + std::strerror(errno));
    return false;
  }
  if (!nfw::SensorSysLogger::get()->startRecord()) {
    mFailure.note(EXIT_RUNTIME, mRecord.mSensorFile + ": no recording can be begun there");
    return false;
  }
  mHasSensorLog = true;
  writeSensorNote(runnote::BEGIN);
  return true;
}

// The kernel gives a new name to one process alone. The descriptor tells later whether the file still has it.
bool Recorder::setSensorFile() {
  const std::string& lPath = mRecord.mSensorFile;
  if (mRecord.mIsSensorSeries) return setSensorFiles(lPath, mRecord.mPrefix + RecordOptions::SENSOR_SUFFIX);
  mSensorFile = ::open(lPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOCTTY | O_CLOEXEC, mode_t{0666});
  return mSensorFile >= 0 && syslogservice::setBinaryLogFile(lPath.c_str());
}

bool Recorder::setSensorFiles(const std::string& nDirectory, const std::string& nPrefix) {
  mendIn(nDirectory, nPrefix);
  mSensorPrefix = nPrefix;
  if (!syslogservice::setBinaryLogFiles(
          {nDirectory.c_str(), nPrefix.c_str(), mRecord.mMaxFileSize, mRecord.mMaxFileTimeMs, mRecord.mIsAligned})) {
    return false;
  }
  if (!mSensorLimits.begin(nDirectory, nPrefix, mRecord)) {
    mSensorLog.noteFault("the limits of its files cannot be kept");
  }
  return true;
}

void Recorder::awaitBackup() {
  const Worker::Clock::duration STEP = std::chrono::milliseconds(10);
  mAwaitsBackup = true;
  while (nfw::Logger::get()->getBackup() == nfw::LOG_BACKUP_RUNNING && !mWorker.isFinishing()) {
    std::this_thread::sleep_for(STEP);
  }
  mAwaitsBackup = false;
}

void Recorder::beginIn(const std::string& nDirectory) {
  mWorker.post([this, nDirectory] {
    if (!startRecord(nDirectory)) {
      mLog.noteFault("no recording could be begun in " + nDirectory);
      return tell(nDirectory + ": no recording can be begun there");
    }
    mHasBegun = true;
    mLog.want(nDirectory);
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "recording into %s", nDirectory.c_str());
  });
}

void Recorder::endIn() {
  mWorker.post([this] {
    mLimits.end();
    if (!nfw::Logger::get()->isRecording()) return;
    nfw::Logger::get()->stopRecord();
    APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "recording has ended: the medium is gone");
  });
}

void Recorder::keep() {
  mWorker.post([this] { keepNow(); });
}

// The last files of both logs, with all that was recorded so far.
void Recorder::keepNow() {
  nfw::Logger& lLogger = *nfw::Logger::get();
  char lDirectory[512];
  const bool lHasLog = lLogger.isRecording() && lLogger.getRecordingDir(lDirectory, sizeof(lDirectory));
  if (!lHasLog && !mHasSensorLog) return tell("no file is kept: nothing is recorded");
  if (lHasLog) {
    lLogger.flush();
    keepIn(lDirectory, mRecord.mPrefix, mLog);
  }
  if (mHasSensorLog) {
    syslogservice::flushBinaryLog(SENSOR_FLUSH_MS);
    const std::filesystem::path lPath(mRecord.mSensorFile);
    if (!mSensorPrefix.empty()) return keepIn(lPath, mSensorPrefix, mSensorLog);
    keepIn(lPath.has_parent_path() ? lPath.parent_path() : ".", lPath.filename(), mSensorLog);
  }
}

void Recorder::keepIn(const std::string& nDirectory, const std::string& nName, LogReport& nLog) const {
  const KeptCounts lKept = keepFiles(nDirectory, nName, mRecord.mKeepBeforeSec);
  nLog.noteKept(lKept);
  if (!lKept.mFault.empty()) return tell(nLog.getName() + ": not all files of the last time are kept: " + lKept.mFault);
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "%s: %u more file%s of the last %u s kept in %s/kept",
         nLog.getName().c_str(), lKept.mNum, lKept.mNum == 1 ? "" : "s", mRecord.mKeepBeforeSec, nDirectory.c_str());
}

bool Recorder::isSilent() const { return mWorker.busyFor() >= LATE_TIME; }

void Recorder::watch() {
  const bool lIsSilent = isSilent() && !mAwaitsBackup;
  const Spell::Word lWord = mSilence.look(lIsSilent, Spell::Clock::now());
  if (lWord == Spell::BEGINS || lWord == Spell::GOES_ON) tell("the medium of the recording does not answer");
  if (lWord == Spell::IS_OVER) tell("the medium of the recording answers again");
}

void Recorder::look() {
  nfw::Logger::get()->flush();
  mLog.noteDeleted(mLimits.getCounts());
  mSensorLog.noteDeleted(mSensorLimits.getCounts());
  if (mLog.isWanted()) tell(mLog.look(nfw::Logger::get()->getRecordCounts(), Spell::Clock::now()));
  if (mSensorLog.isWanted()) tell(mSensorLog.look(sensorCounts(), Spell::Clock::now()));
}

nfw::LogRecordCounts Recorder::sensorCounts() const {
  nfw::LogRecordCounts lCounts = nfw::SensorSysLoggerManager::get()->getRecordCounts();
  const syslogservice::BinaryLogCounts lFile = syslogservice::binaryLogCounts();
  lCounts.mRecorded -= lFile.mFailed;
  lCounts.mFailed = lFile.mFailed;
  lCounts.mBytes = lFile.mBytes;
  lCounts.mIsFailing = lFile.mError != 0;
  const bool lIsRemoved = mRecord.mIsSensorSeries && lFile.mError == 0;
  if (lFile.mFailed > 0) lCounts.mReason = lIsRemoved ? nfw::LOG_LOSS_REMOVED : nfw::LOG_LOSS_WRITE;
  if (lCounts.mReason == nfw::LOG_LOSS_WRITE) lCounts.mError = lFile.mError;
  struct stat lStat = {};
  if (mSensorFile < 0 || ::fstat(mSensorFile, &lStat) != 0 || lStat.st_nlink > 0) return lCounts;
  lCounts.mFailed += lCounts.mRecorded;
  lCounts.mRecorded = lCounts.mBytes = 0;
  lCounts.mReason = nfw::LOG_LOSS_REMOVED;
  lCounts.mError = 0;
  return lCounts;
}

bool Recorder::finish() {
  if (mWorker.finish([this] { end(); }, isSilent() ? SILENT_END_TIME : END_TIME)) return true;
  mIsLeftBehind = true;
  giveUp();
  return false;
}

void Recorder::giveUp() {
  const char* const lpWhy = isSilent() ? "the medium does not answer" : "the recording was not ended";
  for (LogReport* const lpLog : {&mLog, &mSensorLog}) lpLog->noteFault(lpWhy);
}

// What listeners received is known by now, and nothing comes any more.
void Recorder::end() {
  writeEndNotes();
  nfw::SensorSysLogger::get()->stopRecord();
  nfw::Logger::get()->stopRecord();
  syslogservice::setBinaryLogFile(nullptr);
  look();
  if (nfw::Logger::get()->getBackup() >= nfw::LOG_BACKUP_FAILED) mLog.noteFault("no backup of " + mRecord.mBackup);
  if (!mRecord.mDrive.empty() && !mHasBegun) mLog.noteFault(mRecord.mDrive + " was never there to record onto");
  nfw::SensorSysLogger::get()->shutdown();
  nfw::SensorSysLogger::destroy();
  nfw::Logger::get()->shutdown();
  nfw::Logger::destroy();
  keepWithinForGood();
  if (mSensorFile >= 0) ::close(mSensorFile);
}

void Recorder::writeEndNotes() const {
  const StreamTally lDelivered = mProgress.delivered();
  if (!mRecord.mDirectory.empty()) writeNote(runnote::end(lDelivered));
  if (mRecord.mSensorFile.empty()) return;
  StreamTally lStored = mProgress.mStored.get();  // sentences as their records give them back
  lStored.mDeadReckoning = lDelivered.mDeadReckoning;
  writeSensorNote(runnote::end(lStored));
}

}  // namespace drive
