/// @file
/// What became of the records that a log service was offered.
#pragma once

namespace nfw {

/// Why a record is missing from a recording.
enum LogLoss {
  LOG_LOSS_NONE,     ///< none is
  LOG_LOSS_INVALID,  ///< refused: its id, data or size cannot be recorded
  LOG_LOSS_BACKUP,   ///< refused: a backup was being made
  LOG_LOSS_NO_FILE,  ///< refused: no file can be made for it
  LOG_LOSS_BUFFER,   ///< refused: the buffer has no room, or never got its memory
  LOG_LOSS_TIME,     ///< refused: the platform told no time
  LOG_LOSS_WRITE,    ///< refused or lost: the file, or the system log service, does not take it
  LOG_LOSS_REMOVED,  ///< lost: the file was removed while it was written
};

/// How the copy of a directory into the recording stands (Logger::startRecord()).
enum LogBackup { LOG_BACKUP_NONE, LOG_BACKUP_RUNNING, LOG_BACKUP_DONE, LOG_BACKUP_FAILED, LOG_BACKUP_CANCELED };

/// The fates of all records that were offered while a recording ran, since the service was made: what was offered is
/// mRecorded + mRefused + mFailed, and the recording is whole when the last two are 0.
struct LogRecordCounts {
  unsigned long long mRecorded = 0;  ///< in a file, or on the way there while a recording runs
  unsigned long long mRefused = 0;   ///< not taken when they were offered
  unsigned long long mFailed = 0;    ///< taken, and lost on the way
  unsigned long long mBytes = 0;     ///< of the recorded ones, as they stand in the files
  LogLoss mReason = LOG_LOSS_NONE;   ///< of the last loss
  int mError = 0;                    ///< errno of the last loss, 0 when the platform told none
  bool mIsFailing = false;           ///< the file takes nothing at present; what is taken waits, and may be lost

  unsigned long long missing() const { return mRefused + mFailed; }
};

}  // namespace nfw
