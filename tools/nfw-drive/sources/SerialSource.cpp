#include "SerialSource.h"

#include <fcntl.h>

#include <cerrno>
#include <cstring>

#include "SerialSpeed.h"

namespace drive {

SentenceSource::OpenResult SerialSource::open(std::string* npReason) {
  mReader.reset(::open(mPath.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (mReader.getFd() >= 0 && setUpSerialLine(mReader.getFd(), mBaud)) {
    mHasWorked = true;
    return OPENED;
  }
  *npReason = std::strerror(errno);
  return mHasWorked ? OPEN_LATER : OPEN_FAILED;
}

int SerialSource::read(char* npBuffer, size_t nSize, std::string* npReason) {
  const int lSize = mReader.read(npBuffer, nSize, npReason);
  if (lSize != END) return lSize;
  *npReason = "the line is gone";
  return BROKEN;
}

}  // namespace drive
