#include "Output.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>

namespace tool {

void Output::write(std::string_view nText) {
  if (mState != OPEN) return;
  mText.append(nText);
  if (mText.size() >= FLUSH_SIZE) flush();
}

void Output::flush() {
  std::string_view lText(mText);
  while (!lText.empty() && mState == OPEN && writeSome(&lText)) {
  }
  mText.clear();
}

bool Output::isTerminal() const { return ::isatty(mFd) == 1; }

bool Output::writeSome(std::string_view* npText) {
  const ssize_t lSize = ::write(mFd, npText->data(), npText->size());
  if (lSize >= 0) {
    npText->remove_prefix(static_cast<size_t>(lSize));
    return true;
  }
  if (errno == EAGAIN) {  // standard output may share a descriptor that somebody made non-blocking
    pollfd lFd = {mFd, POLLOUT, 0};
    ::poll(&lFd, 1, -1);
    return true;
  }
  if (errno != EINTR) fail(errno);
  return mState == OPEN;
}

void Output::fail(int nError) {
  mState = nError == EPIPE ? READER_GONE : FAILED;
  mError = nError;
}

}  // namespace tool
