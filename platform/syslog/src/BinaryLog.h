// The file of BinaryLogWrite.
#pragma once

#include <mutex>

#include "SysLogServiceHost.h"

namespace syslogservice {

/// A sequence of whole records: one that the file system takes in part only is cut off again. Any thread may call.
class BinaryLog {
 public:
  bool setFile(const char* npPath);
  bool append(const void* npData, unsigned int nSize);
  BinaryLogCounts counts();

 private:
  std::mutex mMutex;  // guards what follows
  BinaryLogCounts mCounts;
  int mFile = -1;
};

}  // namespace syslogservice
