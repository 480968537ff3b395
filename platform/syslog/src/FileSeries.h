// Where the binary log's records go: one file, or files that follow one another.
#pragma once

#include <limits.h>

#include <cstddef>
#include <cstdint>

#include "SysLogServiceHost.h"

namespace syslogservice {

/// On the writer's thread, once its name is set.
class FileSeries {
 public:
  /// What a file was given.
  struct Content {
    uint64_t mSize = 0, mNum = 0;  // bytes, records
  };

  FileSeries() = default;
  ~FileSeries();
  FileSeries(const FileSeries&) = delete;
  FileSeries& operator=(const FileSeries&) = delete;

  /// Without a prefix the directory is the name of one file. 0, or the errno, as below.
  int set(const BinaryLogFiles& nFiles);

  int open();
  int get() const { return mFile; }
  void sync() const;

  /// Whether a record of that size has to go into another file.
  bool isOver(uint32_t nSize) const;
  /// Bytes that the file may still take, of whole records.
  uint32_t room() const;
  void grow(uint32_t nSize, uint32_t nNum);
  /// Somebody has removed the file. One file by itself is its owner's business.
  bool isGone() const;
  /// Goes on in another file; on an error in the one before.
  int turn();
  const Content& content() const { return mContent; }

 private:
  bool isSeries() const { return mPrefixAt != 0; }
  int openFile(int nFlags);
  int openNext();
  void begin();

  char mPath[PATH_MAX] = {};  // of the file
  size_t mPrefixAt = 0;       // behind it is the part of a series' file that changes; 0: there is one file
  uint32_t mMaxSize = 0;
  uint32_t mMaxTimeMs = 0;
  bool mIsAligned = false;
  int mFile = -1;
  Content mContent;
  int64_t mEndMs = 0;
};

}  // namespace syslogservice
