#include "TrackText.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

namespace logtool {

namespace {

int openNameless() {
  std::error_code lError;
  std::string lName = (std::filesystem::temp_directory_path(lError) / "nfw-log.XXXXXX").string();
  const int lFd = ::mkostemp(lName.data(), O_CLOEXEC);
  if (lFd >= 0) ::unlink(lName.c_str());
  return lFd;
}

}  // namespace

TrackText::TrackText(OutputFile& nOutput, bool nIsFirst) : mOutput(nOutput) {
  if (nIsFirst) return;
  mFd = openNameless();
  if (mFd < 0) fail(errno);
  mWaiting = std::make_unique<tool::Output>(mFd);
}

TrackText::~TrackText() {
  if (mFd >= 0) ::close(mFd);
}

void TrackText::write(std::string_view nText) {
  if (mWaiting)
    mWaiting->write(nText);
  else
    mOutput.write(nText);
}

void TrackText::finish() {
  if (!mWaiting || mFd < 0) return;
  mWaiting->flush();
  if (mWaiting->getState() != tool::Output::OPEN) return fail(mWaiting->getError());
  char lBytes[16 * 1024];
  ssize_t lSize = ::lseek(mFd, 0, SEEK_SET) == 0 ? 1 : -1;
  while (lSize > 0 && (lSize = ::read(mFd, lBytes, sizeof(lBytes))) > 0) {
    mOutput.write({lBytes, static_cast<size_t>(lSize)});
  }
  if (lSize < 0) fail(errno);
}

void TrackText::fail(int nError) { mOutput.spoil("a temporary file for a further track", nError); }

}  // namespace logtool
