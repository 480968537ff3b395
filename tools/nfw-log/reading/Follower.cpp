#include "Follower.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

namespace logtool {

namespace {

const int LOOK_AGAIN_MS = 1000;  // for file systems that do not tell of changes

}  // namespace

Follower::Follower(const Recording& nRecording, const std::string& nWord, Problems& nProblems)
    : mRecording(nRecording), mWord(nWord), mProblems(nProblems), mWatch(::inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
  const std::filesystem::path lDirectory = std::filesystem::path(nRecording.mPaths.front()).parent_path();
  ::inotify_add_watch(mWatch, lDirectory.empty() ? "." : lDirectory.c_str(), IN_MODIFY | IN_CREATE | IN_MOVED_TO);
}

Follower::~Follower() {
  if (mFd > STDIN_FILENO) ::close(mFd);
  ::close(mWatch);
}

bool Follower::next(tool::Record* npRecord, const std::function<void()>& nOnWait) {
  while (mStream || openNext()) {
    if (mStream->next(npRecord)) return true;
    if (mStream->getError() != 0 || mStream->isForeign()) {
      const int lError = mStream->getError();
      mProblems.onUnreadable(mRecording.mPaths[mFile - 1], lError != 0 ? std::strerror(lError) : "no recording");
      return false;
    }
    if (mFile < mRecording.mPaths.size() || isFollowed()) {
      // The recorder is done with this file: what is left of it is judged for good.
      mStream->setLive(false);
      if (mStream->next(npRecord)) return true;
      mStream.reset();
    } else {
      nOnWait();
      wait();
    }
  }
  return false;
}

bool Follower::openNext() {
  if (mFd > STDIN_FILENO) ::close(mFd);
  const std::string& lPath = mRecording.mPaths[mFile++];
  mFd = lPath == "-" ? STDIN_FILENO : ::open(lPath.c_str(), O_RDONLY | O_CLOEXEC);
  if (mFd < 0) {
    mProblems.onUnreadable(lPath, std::strerror(errno));
    return false;
  }
  mStream.emplace(mFd, static_cast<tool::RecordDamageListener*>(this));
  mStream->setLive(true);
  return true;
}

/// Whether the directory has a file behind this one.
bool Follower::isFollowed() {
  std::vector<Recording> lFound;
  std::string lReason;
  if (!std::filesystem::is_directory(mWord) || !findRecordings({mWord}, &lFound, &lReason)) return false;
  for (const Recording& lRecording : lFound) {
    if (lRecording.mName == mRecording.mName) addNew(lRecording.mPaths);
  }
  return mFile < mRecording.mPaths.size();
}

/// What appears while others are read comes behind them, whatever a clock that was set back calls it.
void Follower::addNew(const std::vector<std::string>& nPaths) {
  std::vector<std::string>& lKnown = mRecording.mPaths;
  std::copy_if(nPaths.begin(), nPaths.end(), std::back_inserter(lKnown), [&](const std::string& nPath) {
    return std::find(lKnown.begin(), lKnown.end(), nPath) == lKnown.end();
  });
}

void Follower::wait() const {
  pollfd lFd = {mWatch, POLLIN, 0};
  char lEvents[4096];
  if (::poll(&lFd, 1, LOOK_AGAIN_MS) > 0 && ::read(mWatch, lEvents, sizeof(lEvents)) < 0) return;
}

void Follower::onDamage(const tool::RecordDamage& nDamage) {
  mProblems.onDamage(mRecording.mPaths[mFile - 1], nDamage);
}

}  // namespace logtool
