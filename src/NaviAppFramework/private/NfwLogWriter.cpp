#include "NfwLogWriter.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "FieldMsg.h"
#include "LogQuiet.h"
#include "MsgRoute.h"
#include "NfwAppLog.h"
#include "NfwThreadMsgProfilerManager.h"
#include "ServiceThread.h"
#include "Watched.h"
#include "utl/StringUtil.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const int BACKUP_MSG = ownMsgId(0x02);
const int WRITE_FILE_MSG = ownMsgId(0x03);

const unsigned int QUEUE_LENGTH = 1024;
const int WRITER_PRIORITY = 6;  // above the services: a full ring makes their callers wait

const unsigned int BATCH_SIZE = 10240;  // the thread leaves less to the next request, or to a flush
const uint64_t EVERYTHING = ~uint64_t{0};

const uint32_t REPLACE_INTERVAL_MS = 10000;
const uint32_t LINE_FLUSH_INTERVAL_MS = 1000;

class BackupMsg : public FieldMsg<BackupMsg> {
 public:
  static constexpr const char* NAME = "BackupMsg";
  using FieldMsg::FieldMsg;
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mSourcePath);
  }

  char mSourcePath[LOG_PATH_SIZE] = {};
};

const ThreadMsgProfile<BackupMsg> gProfile(THREAD_MSG_LOG_WRITER);

bool isGiven(const char* npText) { return npText != nullptr && npText[0] != '\0'; }

void logCreated(const LogFile& nFile) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "##### Create Log Record File: File=%s", nFile.getPath());
}

void logClosed(const LogFile& nFile) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "##### Close Log Record File: File=%s", nFile.getPath());
}

void logNewFile(const LogFile& nFile) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_INFO, "LogWriter::write(): New File was created: %s", nFile.getPath());
}

int failBase(const char* npText, unsigned int nId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): %s: Id=0x%08X", npText, nId);
  return LogWriter::FAILURE;
}

}  // namespace

LogWriter::LogWriter(unsigned int nBufferSize, unsigned int nMaxLogFileSize)
    : mThread(ThreadMsgProfilerManager::profiledSize(THREAD_MSG_LOG_WRITER), QUEUE_LENGTH, "nfw::LogWriter_Thread", 0),
      mBuffer(nBufferSize),
      mReplacing(REPLACE_INTERVAL_MS),
      mFlushingForLines(LINE_FLUSH_INTERVAL_MS),
      mMaxLogFileSize(nMaxLogFileSize) {}

LogWriter::~LogWriter() {
  if (isInitialized()) shutdown();
}

bool LogWriter::initialize() {
  const LogQuiet lQuiet;
  const WatchedLock lLock(mSync);
  if (mState != CREATED || !startThread(mThread, this, WRITER_PRIORITY)) return false;
  mState = INITIALIZED;
  return true;
}

// --- start and stop

bool LogWriter::start(const char* npDirectory, const char* npFilePrefix, const char* npBackupDirectory) {
  const LogQuiet lQuiet;
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  if (!isInitialized() || npDirectory == nullptr || npFilePrefix == nullptr) return false;

  const WatchedLock lFileLock(mFileSync);
  const WatchedLock lLock(mSync);
  if (mIsRecording || mIsBackingUp || mStoppingCount > 0 || mIsShuttingDown) return false;
  if (mFile.isOpen() || utl::File::exists(npDirectory)) return false;
  if (!startLocked(npDirectory, npFilePrefix)) {
    clearPaths();
    return false;
  }
  mBackup = LOG_BACKUP_NONE;
  if (isGiven(npBackupDirectory)) postBackup(npBackupDirectory);
  mIsRecording = true;
  return true;
}

bool LogWriter::startLocked(const char* npDirectory, const char* npFilePrefix) {
  if (!utl::copyStr(mDirectory, LOG_PATH_SIZE, npDirectory)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "NfwLogWriter::start(): Can't copy dir path: %s", npDirectory);
    return false;
  }
  if (!utl::copyStr(mFilePrefix, LOG_PATH_SIZE, npFilePrefix)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "NfwLogWriter::start(): Can't copy file prefix: %s", npFilePrefix);
    return false;
  }
  return openLocked();
}

void LogWriter::clearPaths() {
  mDirectory[0] = '\0';
  mFilePrefix[0] = '\0';
}

// A cancel asked for from here on is meant for this backup, also before it begins.
void LogWriter::postBackup(const char* npDirectory) {
  BackupMsg lMsg(BACKUP_MSG);
  mBackup = LOG_BACKUP_FAILED;
  if (!utl::copyStr(lMsg.mSourcePath, LOG_PATH_SIZE, npDirectory)) return;
  mBackup = LOG_BACKUP_RUNNING;
  mFileCopy.clearCancel();
  setBackupIdle(false);
  if (watched([&] { return mThread.postMsg(lMsg); })) return;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::start(): Can't backup");
  mBackup = LOG_BACKUP_FAILED;
  setBackupIdle(true);
}

void LogWriter::setBackupIdle(bool nIsIdle) {
  mIsBackingUp = !nIsIdle;
  if (nIsIdle) {
    mBackupIdle.on();
  } else {
    mBackupIdle.off();
  }
}

// Neither gated nor bound to a state: a shutdown stops through here. isRecording() stays true until the backup is over.
void LogWriter::stop() {
  const LogQuiet lQuiet;
  {
    const WatchedLock lFileLock(mFileSync);
    const WatchedLock lLock(mSync);
    ++mStoppingCount;
    closeLocked();
    clearPaths();
  }
  mFileCopy.requestCancel();
  watched([this] { return mBackupIdle.waitToOn(0); });
  const WatchedLock lLock(mSync);
  mIsRecording = false;
  --mStoppingCount;
}

// The first lock is there for a start() under way: behind it no cancel is taken back any more.
void LogWriter::shutdown() {
  const LogQuiet lQuiet;
  {
    const WatchedLock lLock(mSync);
    mIsShuttingDown = true;
    mFileCopy.requestCancel();
  }
  setBackupIdle(true);
  mControl.prohibit();
  if (mState.exchange(SHUT_DOWN) == SHUT_DOWN) return;
  setBackupIdle(true);
  stop();
  mThreadEnd.stop(mThread);
  setBackupIdle(true);
  UnsyncedFiles lFiles;
  if (isSyncing() && !mThread.isRunning() && takeUnsynced(&lFiles)) sync(lFiles);
}

// --- the file

bool LogWriter::open() {
  const LogQuiet lQuiet;
  const WatchedLock lFileLock(mFileSync);
  const WatchedLock lLock(mSync);
  return openLocked();
}

bool LogWriter::openLocked() {
  if (mMaxLogFileSize == 0) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::open(): MaxLogFileSize == 0");
    return false;
  }
  if (mFile.isOpen() || !createFile(mFile)) return false;
  mBuffer.clear();
  mTally.beginFile();
  mFileTime.begin();
  logCreated(mFile);
  return true;
}

bool LogWriter::createFile(LogFile& nFile) {
  char lPath[LOG_PATH_SIZE];
  bool lIsMade = false;
  if (!createLogFilePath(mDirectory, mFilePrefix, lPath, &lIsMade)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::open(): Can't create path: Dir=%s FilePrifix=%s", mDirectory,
           mFilePrefix);
    return false;
  }
  if (nFile.open(lPath)) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::open(): Can't open %s", lPath);
  if (lIsMade) ::unlink(lPath);
  return false;
}

void LogWriter::close() {
  const LogQuiet lQuiet;
  const WatchedLock lFileLock(mFileSync);
  const WatchedLock lLock(mSync);
  closeLocked();
}

void LogWriter::closeLocked() {
  if (mFile.isOpen()) {
    flushLocked();
    dropBuffer();
    if (!mFile.hasName()) mTally.loseFile();
    endFile();
  }
  mBuffer.clear();
  mHasFlushFailed = mHasDirectFailed = false;
}

void LogWriter::endFile() {
  logClosed(mFile);
  noteUnsynced();
  mSyncedSize = 0;
  mFile.close();
}

/// What the last flush has left, whole records all of them.
void LogWriter::dropBuffer() {
  for (uint64_t lSize = LogFile::firstSize(mBuffer); lSize > 0; lSize = LogFile::firstSize(mBuffer)) {
    mTally.lose(lSize, LOG_LOSS_WRITE, mFile.getError());
    mBuffer.eraseTop(static_cast<unsigned int>(lSize));
  }
}

// Also when there is no file: a directory that vanished, or a disk that was full, may be back.
bool LogWriter::rotate(const Record& nRecord) {
  closeLocked();
  if (!openLocked()) {
    failBase("Can't open new file", nRecord.id());
    return false;
  }
  logNewFile(mFile);
  return true;
}

/// Another file, when nothing goes into this one any more: a stick that was pulled and is back under the same path
/// takes new files, while what was open on it fails for ever.
bool LogWriter::beginReplacement(LogFile& nFile) {
  if (!mReplacing.take() || !createFile(nFile)) return false;
  mTally.noteBuffered(LogFile::recordNum(mBuffer), mBuffer.size());
  return true;
}

/// Kept only when something could be written into it: a full disk keeps the file it has, and is left no empty ones.
bool LogWriter::endReplacement(LogFile& nFile, bool nIsWritten) {
  if (!nIsWritten) {
    nFile.remove();
    return false;
  }
  mTally.moveOn(!mFile.hasName());
  endFile();
  mFile = std::move(nFile);
  mFileTime.begin();
  logCreated(mFile);
  logNewFile(mFile);
  return true;
}

// --- records

int LogWriter::write(int nLogTypeId, const void* npData, unsigned int nSize) {
  const LogQuiet lQuiet;
  if (!mControl.start()) return NOT_ACCEPTED;
  const AutoCompleteOperation lComplete(mControl);
  if (!isInitialized()) return NOT_ACCEPTED;

  const Record lRecord{nLogTypeId, npData, nSize};
  int lResult = FAILURE;
  bool lIsWake = false;
  bool lIsDone = false;
  {
    const WatchedLock lLock(mSync);
    if (!isAccepting() || (isHeldBack(lRecord) && !mFlushingForLines.take())) return refuseUntaken();
    if (isSimple(lRecord)) {
      lIsDone = true;
      lResult = tally(lRecord, buffer(lRecord));
      lIsWake = lResult == SUCCESS && takeWake();
    }
  }
  if (!lIsDone) {
    const WatchedLock lFileLock(mFileSync);
    const WatchedLock lLock(mSync);
    if (!isAccepting()) return refuseUntaken();
    lResult = tally(lRecord, writeWithFile(lRecord));
    lIsWake = lResult == SUCCESS && takeWake();
  }
  if (lIsWake && !postWriteFile()) failBase("Can't post thread", lRecord.id());
  return lResult;
}

/// Lines of the log leave the room in the ring to data while the file takes nothing; they still reach the log service.
/// One a second brings a flush about first, so that lines alone find out when the file takes something again.
bool LogWriter::isHeldBack(const Record& nRecord) const {
  return nRecord.mId == APPLOG_LOGGER_ID && mHasFlushFailed.load(std::memory_order_relaxed);
}

// What is offered while nothing is recorded is nobody's loss.
int LogWriter::refuseUntaken() {
  if (isAccepting()) {
    mTally.refuse(LOG_LOSS_WRITE, mFile.getError());  // a line that is held back
  } else if (isRefusing()) {
    mTally.refuse(LOG_LOSS_BACKUP);
  }
  return NOT_ACCEPTED;
}

void LogWriter::refuse(LogLoss nReason) {
  const WatchedLock lLock(mSync);
  if (mIsRecording) mTally.refuse(nReason);
}

int LogWriter::tally(const Record& nRecord, int nResult) {
  if (nResult == SUCCESS) {
    mTally.take(nRecord.size());
  } else {
    mTally.refuse(lossOf(nRecord), mFile.getError());
  }
  return nResult;
}

/// Why a record was not taken, as things stand behind it.
LogLoss LogWriter::lossOf(const Record& nRecord) const {
  const unsigned char* lpBytes = nullptr;
  if (!isSound(nRecord)) return LOG_LOSS_INVALID;
  if (!mFile.isOpen()) return LOG_LOSS_NO_FILE;
  if (mFile.hasFailed()) return LOG_LOSS_WRITE;
  if (nRecord.size() > mBuffer.getFreeSpace() || mBuffer.top(&lpBytes) < 0) return LOG_LOSS_BUFFER;
  return LOG_LOSS_TIME;
}

LogRecordCounts LogWriter::getRecordCounts() {
  const WatchedLock lFileLock(mFileSync);
  const bool lIsLost = isFileLost();
  const WatchedLock lLock(mSync);
  LogRecordCounts lCounts = lIsLost ? mTally.withoutFile() : mTally.get();
  lCounts.mIsFailing = mFile.isOpen() && mFile.hasFailed();
  return lCounts;
}

bool LogWriter::isSound(const Record& nRecord) {
  return nRecord.mId >= 0 && nRecord.mpData != nullptr && nRecord.mSize <= LogRecord::MAX_DATA_SIZE;
}

/// Nothing has to be done to the file, and nothing is wrong.
bool LogWriter::isSimple(const Record& nRecord) const {
  return isSound(nRecord) && !isHeldBack(nRecord) && fitsFile(nRecord) && nRecord.size() <= mBuffer.getFreeSpace();
}

bool LogWriter::isValid(const Record& nRecord) const {
  if (nRecord.mId < 0) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): LogTypeId is negative value");
    return false;
  }
  if (nRecord.mpData == nullptr) return failBase("Data is null", nRecord.id()) == SUCCESS;
  if (nRecord.mSize > LogRecord::MAX_DATA_SIZE) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Data is too big: Id=0x%08X DataSize=%u Byte",
           nRecord.id(), nRecord.mSize);
    return false;
  }
  return true;
}

int LogWriter::writeWithFile(const Record& nRecord) {
  if (!isValid(nRecord)) return FAILURE;
  if (!fitsFile(nRecord) && !rotate(nRecord)) return FAILURE;
  if (!mFile.isOpen()) return failBase("mpFile == 0", nRecord.id());
  if (isHeldBack(nRecord) && !flushLocked()) return NOT_ACCEPTED;
  flushForRoom(nRecord);
  return nRecord.size() > mBuffer.getBufferSize() ? writeDirectly(nRecord) : buffer(nRecord);
}

void LogWriter::flushForRoom(const Record& nRecord) {
  if (nRecord.size() <= mBuffer.getFreeSpace()) return;
  APPLOG(
      LOG_TYPE_NFW, LOG_LEVEL_WARNING,
      "LogWriter::write(): Log Buffer is not Enough: Id=0x%08X Record=%u Byte Base=%u Byte Data=%u Byte Free=%u Byte",
      nRecord.id(), static_cast<unsigned int>(nRecord.size()), LogRecord::BASE_SIZE, nRecord.mSize,
      mBuffer.getFreeSpace());
  const uint64_t lBefore = mFile.size();
  const bool lIsStuck = !flushLocked() && mFile.size() <= lBefore && !mBuffer.isEmpty();
  LogFile lFile;
  if (lIsStuck && beginReplacement(lFile) && endReplacement(lFile, moveTop(lFile))) flushLocked();
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "LogWriter::write(): Flushed File");
}

bool LogWriter::moveTop(LogFile& nFile) {
  const unsigned char* lpBytes = nullptr;
  const int lSize = mBuffer.top(&lpBytes);
  if (lSize <= 0 || !nFile.write(lpBytes, static_cast<unsigned int>(lSize))) return false;
  nFile.accept(mBuffer, static_cast<unsigned int>(lSize));
  return true;
}

namespace {

/// What a record is made of, in its order.
struct RecordParts {
  struct Part {
    const char* mpName;
    const void* mpBytes;
    unsigned int mSize;
  };
  RecordParts(const LogRecordBase& nBase, const void* npData, unsigned int nSize)
      : mParts{{"base data", nBase.bytes(), LogRecord::BASE_SIZE},
               {"data", npData, nSize},
               {"postfix", &LogRecord::POSTFIX, LogRecord::POSTFIX_SIZE}} {}

  const Part mParts[3];
};

/// Writes a record's parts one after the other. The part that failed, or null.
const RecordParts::Part* writeParts(LogFile& nFile, const RecordParts& nParts) {
  for (const RecordParts::Part& lPart : nParts.mParts) {
    if (nFile.writePart(lPart.mpBytes, lPart.mSize) < 0) return &lPart;
  }
  nFile.endRecord();
  return nullptr;
}

int failPart(const char* npPart, const char* npTarget, int nResult, unsigned int nId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Can't write %s to %s: Ret=%u Id=0x%08X", npPart, npTarget,
         static_cast<unsigned int>(nResult), nId);
  return LogWriter::FAILURE;
}

}  // namespace

// Whole or not at all: the part that finds no room is named, and none is written.
int LogWriter::buffer(const Record& nRecord) {
  if (!mBase.build(nRecord.mId, nRecord.mSize)) return FAILURE;
  const RecordParts lParts(mBase, nRecord.mpData, nRecord.mSize);
  uint64_t lNeeded = 0;
  for (const RecordParts::Part& lPart : lParts.mParts) {
    lNeeded += lPart.mSize;
    if (lNeeded > mBuffer.getFreeSpace()) {
      return failPart(lPart.mpName, "buffer", StreamBuffer::BUFFER_DEPLETION, nRecord.id());
    }
  }
  for (const RecordParts::Part& lPart : lParts.mParts) {
    const int lResult = mBuffer.write(lPart.mpBytes, lPart.mSize);
    if (lResult == StreamBuffer::FAILURE) return failPart(lPart.mpName, "buffer", lResult, nRecord.id());
  }
  return SUCCESS;
}

// A ring that could not be flushed is ahead of this record: it would stand in the middle of another one. Without a ring
// to be flushed for room, the second failure in a row tells that the file takes nothing.
int LogWriter::writeDirectly(const Record& nRecord) {
  if (!mBase.build(nRecord.mId, nRecord.mSize)) return FAILURE;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING,
         "LogWriter::write(): Log Data is too Big: Id=0x%08X Record=%u Byte Base=%u Byte Data=%u Byte Buffer=%u Byte",
         nRecord.id(), static_cast<unsigned int>(nRecord.size()), LogRecord::BASE_SIZE, nRecord.mSize,
         mBuffer.getBufferSize());
  if (!mFile.isOpen()) return failBase("File is not opened", nRecord.id());
  const RecordParts lParts(mBase, nRecord.mpData, nRecord.mSize);
  const RecordParts::Part* lpFailed = mBuffer.isEmpty() ? writeParts(mFile, lParts) : &lParts.mParts[0];
  if (lpFailed != nullptr) mFile.cutBack(mBuffer);
  const bool lIsStuck = lpFailed != nullptr && mHasDirectFailed && mBuffer.isEmpty();
  LogFile lFile;
  if (lIsStuck && beginReplacement(lFile) && endReplacement(lFile, writeParts(lFile, lParts) == nullptr)) {
    lpFailed = nullptr;
  }
  mHasDirectFailed = lpFailed != nullptr;
  if (lpFailed != nullptr) return failPart(lpFailed->mpName, "file", utl::File::RESULT_ERROR, nRecord.id());
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_WARNING, "LogWriter::write(): Written File Directory");
  return SUCCESS;
}

// --- from the ring to the file

/// True for the one caller that has to wake the thread: there is a batch for it, and no request is on its way.
bool LogWriter::takeWake() {
  return mBuffer.size() >= BATCH_SIZE && !mIsWakePosted.load(std::memory_order_relaxed) &&
         !mIsWakePosted.exchange(true);
}

bool LogWriter::postWriteFile() {
  if (watched([this] { return mThread.postMsg(WRITE_FILE_MSG); })) return true;
  mIsWakePosted = false;
  return false;
}

void LogWriter::flush() {
  const LogQuiet lQuiet;
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  if (!isInitialized()) return;
  const WatchedLock lFileLock(mFileSync);
  if (mFile.isOpen() && drain(EVERYTHING, "flush")) mFile.flush();
}

// The same with mSync held: nobody may add to the ring until the caller has done what it needs the room or the end for.
bool LogWriter::flushLocked() {
  if (!mFile.isOpen()) return false;
  const unsigned char* lpBytes = nullptr;
  int lSize = 0;
  while ((lSize = topPiece(EVERYTHING, &lpBytes, "flush")) > 0) {
    if (!endPiece(mFile.write(lpBytes, static_cast<unsigned int>(lSize)), lSize, "flush")) return false;
  }
  if (lSize < 0) return false;
  mHasFlushFailed = false;
  mFile.flush();
  return true;
}

/// Writes what is buffered now, at most `nLimit` bytes. False when it failed; what is not written stays buffered.
bool LogWriter::drain(uint64_t nLimit, const char* npOperation) {
  {
    const WatchedLock lLock(mSync);
    nLimit = std::min<uint64_t>(nLimit, mBuffer.size());
  }
  const unsigned char* lpBytes = nullptr;
  int lSize = 0;
  for (;; nLimit -= static_cast<unsigned int>(lSize)) {
    {
      const WatchedLock lLock(mSync);
      lSize = topPiece(nLimit, &lpBytes, npOperation);
    }
    if (lSize <= 0) return lSize == 0;
    const bool lIsWritten = mFile.write(lpBytes, static_cast<unsigned int>(lSize));
    const WatchedLock lLock(mSync);
    if (!endPiece(lIsWritten, lSize, npOperation)) return false;
  }
}

/// The next piece to write, at most `nLimit` bytes: its size, 0 when there is none, negative when it cannot be read.
int LogWriter::topPiece(uint64_t nLimit, const unsigned char** nppBytes, const char* npOperation) {
  const int lSize = mBuffer.top(nppBytes);
  if (lSize < 0) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::%s(): Can't read data from buffer", npOperation);
    return lSize;
  }
  return static_cast<int>(std::min<uint64_t>(nLimit, static_cast<unsigned int>(lSize)));
}

bool LogWriter::endPiece(bool nIsWritten, int nSize, const char* npOperation) {
  mHasFlushFailed = !nIsWritten;
  if (nIsWritten) {
    mFile.accept(mBuffer, static_cast<unsigned int>(nSize));
    return true;
  }
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::%s(): Can't write data: %s", npOperation, mFile.getPath());
  mFile.acceptWhole(mBuffer, static_cast<unsigned int>(nSize));
  const uint64_t lDropped = mFile.cutBack(mBuffer);
  if (lDropped > 0) mTally.lose(lDropped, LOG_LOSS_WRITE, mFile.getError());
  return false;
}

// --- from the file to the medium

bool LogWriter::setSyncInterval(unsigned int nIntervalMs) {
  const LogQuiet lQuiet;
  if (!mControl.start()) return false;
  const AutoCompleteOperation lComplete(mControl);
  const WatchedLock lLock(mSync);
  if (!isInitialized()) return false;
  if (mSyncTimerId != -1) mThread.killTimer(mSyncTimerId, 1);
  mSyncTimerId = nIntervalMs == 0 ? -1 : mThread.setTimer(nIntervalMs, 0, 1);
  return nIntervalMs == 0 || isSyncing();
}

void LogWriter::setMaxFileTime(unsigned int nLimitMs, bool nIsAligned) {
  const WatchedLock lLock(mSync);
  mFileTime.set(nLimitMs, nIsAligned);
}

void LogWriter::noteUnsynced() {
  if (!isSyncing() || mFile.size() == mSyncedSize) return;
  mUnsynced.add(mFile.share());
  mSyncedSize = mFile.size();
}

/// False when there is nothing.
bool LogWriter::takeUnsynced(UnsyncedFiles* npFiles) {
  const WatchedLock lFileLock(mFileSync);
  if (mFile.isOpen()) {
    drain(EVERYTHING, "onSyncTimer");
    noteUnsynced();
  }
  std::swap(*npFiles, mUnsynced);
  return !npFiles->isEmpty();
}

// What cannot be synced may still be read for as long as the system runs: told once, until it works again.
void LogWriter::sync(const UnsyncedFiles& nFiles) {
  const bool lWasFailing = std::exchange(mIsSyncFailing, !nFiles.sync());
  if (mIsSyncFailing && !lWasFailing) APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::onSyncTimer(): Can't sync");
}

// --- the writer's thread

void LogWriter::receiveMsg(int /*nThreadId*/, utl::ThreadRawMsg& nMsg) {
  static const MsgRoute<LogWriter> ROUTES[] = {
      {BACKUP_MSG, &LogWriter::onBackup},
      {WRITE_FILE_MSG, &LogWriter::onWriteFile},
      {utl::TimerMsg::MSG_ID, &LogWriter::onSyncTimer},
  };
  const LogQuiet lQuiet;
  routeMsg(*this, ROUTES, nMsg, "LogWriter");
}

void LogWriter::onWriteFile(utl::ThreadRawMsg& /*nMsg*/) {
  const LogQuiet lQuiet;
  mIsWakePosted = false;
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  if (!isInitialized() || mThread.getFirstMsgId() == WRITE_FILE_MSG) return;
  bool lIsWake = false;
  {
    const WatchedLock lFileLock(mFileSync);
    {
      const WatchedLock lLock(mSync);
      if (!mIsRecording || mStoppingCount > 0 || !mFile.isOpen() || mBuffer.size() < BATCH_SIZE) return;
    }
    if (!drain(BATCH_SIZE, "onWriteFile")) return;
    const WatchedLock lLock(mSync);
    lIsWake = takeWake();
  }
  if (lIsWake && !postWriteFile()) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::onWriteFile(): Can't post thread");
  }
  utl::Thread::sleep(0);
}

// The medium is waited for without a lock, and without the gate: a shutdown would wait for it as long.
void LogWriter::onSyncTimer(utl::ThreadRawMsg& /*nMsg*/) {
  const LogQuiet lQuiet;
  UnsyncedFiles lFiles;
  {
    if (!mControl.start()) return;
    const AutoCompleteOperation lComplete(mControl);
    if (!isInitialized() || !isSyncing() || !takeUnsynced(&lFiles)) return;
  }
  sync(lFiles);
}

void LogWriter::onBackup(utl::ThreadRawMsg& nMsg) {
  const LogQuiet lQuiet;
  struct IdleAtExit {
    ~IdleAtExit() {
      int lRunning = LOG_BACKUP_RUNNING;
      mWriter.mBackup.compare_exchange_strong(lRunning, LOG_BACKUP_FAILED);
      mWriter.setBackupIdle(true);
    }
    LogWriter& mWriter;
  } const lIdleAtExit{*this};
  if (!mControl.start()) return;
  const AutoCompleteOperation lComplete(mControl);
  BackupMsg lMsg;
  char lPath[LOG_PATH_SIZE];
  if (!isInitialized() || !lMsg.restoreFrom(nMsg) || !makeBackupPath(lMsg.mSourcePath, lPath)) return;

  const char* const lpSource = lMsg.mSourcePath;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "##### Backup Start [%s->%s] #####", lpSource, lPath);
  utl::TimeCounter lTime;
  lTime.start();
  const int lResult = mFileCopy.execute(lpSource, lPath, 0);
  mBackup = lResult == ZtFileCopy::FAILED     ? LOG_BACKUP_FAILED
            : lResult == ZtFileCopy::CANCELED ? LOG_BACKUP_CANCELED
                                              : LOG_BACKUP_DONE;
  if (lResult == ZtFileCopy::FAILED) {
    APPLOG(LOG_TYPE_NFW, lResult, "##### Backup Failure [%s->%s] #####", lpSource, lPath);
  } else if (lResult == ZtFileCopy::CANCELED) {
    APPLOG(LOG_TYPE_NFW, lResult, "##### Backup Canceled [%s->%s] #####", lpSource, lPath);
  } else {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "##### Backup Complete [%s->%s] Time=%u msec #####", lpSource, lPath,
           lTime.getElapsed());
  }
}

/// False also when the recording has been stopped since: its directory is not known any more.
bool LogWriter::makeBackupPath(const char* npSource, char (&nPath)[LOG_PATH_SIZE]) {
  const WatchedLock lLock(mSync);
  if (mDirectory[0] == '\0' || mStoppingCount > 0) return false;
  const int lLength = snprintf(nPath, LOG_PATH_SIZE, "%s/%s", mDirectory, "backup");
  if (lLength >= 0 && static_cast<unsigned int>(lLength) < LOG_PATH_SIZE) return true;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::onBackup(): Can't make backup path: Path=%s", npSource);
  return false;
}

}  // namespace nfw
