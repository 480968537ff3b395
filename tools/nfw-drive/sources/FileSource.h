#pragma once

#include "FdReader.h"

namespace drive {

/// A file, a pipe or standard input, read to its end. What begins as a recording or a compressed file counts as broken:
/// what looks like sentences in there is not to be played.
class FileSource : public SentenceSource {
 public:
  FileSource(const std::string& nPath, tool::Stopper& nStopper) : mPath(nPath), mReader(nStopper) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;

 private:
  const std::string mPath;
  FdReader mReader;
  bool mIsJudged = false;
};

}  // namespace drive
