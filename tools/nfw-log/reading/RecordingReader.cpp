#include "RecordingReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace logtool {

bool RecordingReader::next(tool::Record* npRecord) {
  while (mStream || openNext()) {
    if (mStream->next(npRecord)) {
      mKind = npRecord->mKind;
      return true;
    }
    endFile();
  }
  return false;
}

bool RecordingReader::openNext() {
  while (mFile < mRecording.mPaths.size()) {
    const std::string& lPath = mRecording.mPaths[mFile++];
    mFd = lPath == "-" ? STDIN_FILENO : ::open(lPath.c_str(), O_RDONLY | O_CLOEXEC);
    if (mFd >= 0) {
      ::posix_fadvise(mFd, 0, 0, POSIX_FADV_SEQUENTIAL);
      mStream.emplace(mFd, static_cast<tool::RecordDamageListener*>(this));
      return true;
    }
    mProblems.onUnreadable(lPath, std::strerror(errno));
  }
  return false;
}

void RecordingReader::endFile() {
  if (mStream->getError() != 0) {
    mProblems.onUnreadable(getPath(), std::strerror(mStream->getError()));
  } else if (mStream->isForeign()) {
    mProblems.onUnreadable(getPath(), "no recording: expected records of a log or of a sensor log");
  }
  mReadBefore += mStream->getRead();
  mStream.reset();
  close();
}

void RecordingReader::close() {
  if (mFd > STDIN_FILENO) ::close(mFd);
  mFd = -1;
}

}  // namespace logtool
