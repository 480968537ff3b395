// The place of the file of BinaryLogWrite.
#pragma once

#include <atomic>
#include <mutex>

#include "BinaryLogFile.h"

namespace syslogservice {

/// One file at a time, or none. Any thread may call; nobody who appends or counts waits for the file system.
class BinaryLog {
 public:
  /// No directory: no file.
  bool setFiles(const BinaryLogFiles& nFiles);
  void setSyncInterval(unsigned int nMs) { mSyncMs = nMs; }
  bool append(const void* npData, unsigned int nSize);
  bool flush(unsigned int nTimeoutMs);
  BinaryLogCounts counts();

 private:
  bool end(BinaryLogFile* npFile);

  std::atomic<unsigned int> mSyncMs{0};
  std::mutex mChange;  // held while the file is exchanged or waited for
  std::mutex mMutex;   // guards what follows
  BinaryLogFile* mpFile = nullptr;
  BinaryLogCounts mLast;  // of the file that was closed
};

}  // namespace syslogservice
