// The place of the file of BinaryLogWrite.
#pragma once

#include <mutex>

#include "BinaryLogFile.h"

namespace syslogservice {

/// One file at a time, or none. Any thread may call; nobody who appends or counts waits for the file system.
class BinaryLog {
 public:
  bool setFile(const char* npPath);
  bool append(const void* npData, unsigned int nSize);
  bool flush(unsigned int nTimeoutMs);
  BinaryLogCounts counts();

 private:
  bool end(BinaryLogFile* npFile);

  std::mutex mChange;  // held while the file is exchanged or waited for
  std::mutex mMutex;   // guards what follows
  BinaryLogFile* mpFile = nullptr;
  BinaryLogCounts mLast;  // of the file that was closed
};

}  // namespace syslogservice
