#pragma once

#include <mutex>
#include <string>

#include "Events.h"
#include "Options.h"

namespace drive {

/// Why a run cannot go on: the first reason stands. Any thread.
class Failure {
 public:
  explicit Failure(Events& nEvents) : mEvents(nEvents) {}

  void note(ExitCode nExit, const std::string& nText) {
    {
      const std::lock_guard<std::mutex> lLock(mMutex);
      if (!mText.empty()) return;
      mText = nText;
      mExit = nExit;
    }
    mEvents.notify(Events::FAILED);
  }

  bool isNoted() const { return !getText().empty(); }
  std::string getText() const {
    const std::lock_guard<std::mutex> lLock(mMutex);
    return mText;
  }
  ExitCode getExit() const {
    const std::lock_guard<std::mutex> lLock(mMutex);
    return mExit;
  }

 private:
  Events& mEvents;
  mutable std::mutex mMutex;
  std::string mText;
  ExitCode mExit = EXIT_RUNTIME;
};

}  // namespace drive
