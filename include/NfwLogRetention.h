/// @file
/// Keeps recordings from filling their medium.
#pragma once

#include <memory>

#include "NfwExport.h"

namespace nfw {

/// What may stay of a recording's files; 0 stands for "no limit".
struct LogRetentionLimits {
  unsigned long long mMaxTotalSize = 0;  ///< bytes of all files together
  unsigned int mMaxFileNum = 0;
  unsigned int mMaxAgeSec = 0;          ///< since a file was last written to, by the system's clock
  unsigned long long mMinFreeSize = 0;  ///< bytes that stay free on the medium
};

/// What has been deleted so far.
struct LogRetentionCounts {
  unsigned int mDeletedNum = 0;
  unsigned long long mDeletedSize = 0;  ///< bytes
  unsigned int mFailedNum = 0;          ///< files that could not be deleted
  int mError = 0;                       ///< errno of the last failure
};

/// Deletes the oldest files dir/prefix_YYYYMMDD-hhmmss_NN.log of a recording while they are over a limit: those of the
/// data logger, and those of the sensor log where its files are named alike. The newest is taken for the open one and
/// never deleted, nor is anything of another name or in a directory below. The name tells which is older.
///
/// @code
/// nfw::LogRetentionLimits lLimits;
/// lLimits.mMaxTotalSize = 2ULL << 30;
/// lLimits.mMinFreeSize = 500ULL << 20;
/// nfw::LogRetention lRetention("/data/log", "drive", lLimits);
/// lRetention.start();    // before startRecord(); looks once a second, on a thread of its own
/// @endcode
///
/// One thread at a time uses an object; its own thread takes part by itself. Recording knows nothing of it and waits
/// for no deletion. A file that cannot be deleted is told once in the log and passed over.
class NFW_API LogRetention {
 public:
  /// Copies both texts; the directory may come later.
  LogRetention(const char* npDirectory, const char* npFilePrefix, const LogRetentionLimits& nLimits);
  ~LogRetention();  ///< stops
  LogRetention(const LogRetention&) = delete;
  LogRetention& operator=(const LogRetention&) = delete;

  /// Looks once now and every second from now on. @return false when it runs already, a text is too long (259
  /// characters together with a file's name), or there is no thread
  bool start();
  void stop();  ///< waits for a deletion under way, 30 s at most

  /// Looks once, on the calling thread, while not started.
  /// @return false when the directory cannot be read, or a file that is over a limit could not be deleted
  bool apply();

  LogRetentionCounts getCounts() const;  ///< any thread

 private:
  struct Inside;

  std::unique_ptr<Inside> mpInside;
};

}  // namespace nfw
