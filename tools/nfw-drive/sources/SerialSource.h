#pragma once

#include "FdReader.h"

namespace drive {

/// A receiver on a serial line. The end of the line (a plug that was pulled) counts as broken.
class SerialSource : public SentenceSource {
 public:
  SerialSource(const std::string& nPath, unsigned int nBaud, tool::Stopper& nStopper)
      : mPath(nPath), mBaud(nBaud), mReader(nStopper) {}

  /// OPEN_FAILED the first time, when the user can have got the name wrong; OPEN_LATER once it has worked.
  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;

 private:
  const std::string mPath;
  const unsigned int mBaud;
  FdReader mReader;
  bool mHasWorked = false;
};

}  // namespace drive
