#pragma once

#include "FdReader.h"

namespace drive {

/// A file, a pipe or standard input, read to its end.
class FileSource : public SentenceSource {
 public:
  FileSource(const std::string& nPath, tool::Stopper& nStopper) : mPath(nPath), mReader(nStopper) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override {
    return mReader.read(npBuffer, nSize, npReason);
  }

 private:
  const std::string mPath;
  FdReader mReader;
};

}  // namespace drive
