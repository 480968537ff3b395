#include "SourceComponent.h"

#include <pthread.h>

#include "DriveLog.h"
#include "StartThread.h"

namespace drive {

SourceComponent::SourceComponent(const Options& nOptions, const Parts& nParts)
    : nfw::Component("Source"),
      mOptions(nOptions),
      mParts(nParts),
      mReader(nParts.mProgress.mLines, nOptions.mJudgesChecksums) {}

SourceComponent::~SourceComponent() { join(); }

int SourceComponent::initializeBeforeQuickBootImp() {
  mpSource = createSource(mOptions.mSource, mOptions.mSimulator, mStopper);
  return nfw::PHASE_DONE;
}

int SourceComponent::startImp() {
  mIsReading = true;
  if (tool::startThread(&mThread, [this] { run(); })) return nfw::PHASE_PENDING;
  mIsReading = false;
  mParts.mFailure.note(EXIT_RUNTIME, "no thread to read the source on");
  return nfw::PHASE_FAILED;
}

int SourceComponent::stopImp() {
  mStopper.request();
  if (mParts.mpWindows != nullptr) mParts.mpWindows->close();
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsStopRequested = true;
  return mIsReading ? nfw::PHASE_PENDING : nfw::PHASE_DONE;
}

int SourceComponent::shutdownImp() {
  join();
  return nfw::PHASE_DONE;
}

void SourceComponent::onSourceOpen() {
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "source %s is open", mOptions.mSource.mName.c_str());
  setStartComplete();
}

void SourceComponent::onSourceTrouble(const std::string& nMessage) {
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "source %s", nMessage.c_str());
}

void SourceComponent::run() {
  ::pthread_setname_np(::pthread_self(), "drive_Source");
  try {
    readSource();
  } catch (const std::exception& lError) {
    mParts.mFailure.note(EXIT_RUNTIME, mOptions.mSource.mName + ": " + lError.what());
  }
  mParts.mEvents.notify(Events::SOURCE_ENDED);
  setStartComplete();  // of a source that never opened
  if (leave()) setStopComplete();
}

void SourceComponent::readSource() {
  const bool lIsLimited = mOptions.mRecord.isWanted() && mOptions.mPlay.mPaced && mOptions.mPlay.mSpeed == 0.0;
  Intake lIntake(mParts.mReceiver, mpSource->motion(), mParts.mpWindows, mOptions.mRecord, mParts.mProgress);
  RateLimit lLimit(mStopper, lIntake);
  PacedSink lSink(mOptions.mPlay, mStopper,
                  lIsLimited ? static_cast<tool::SentenceSink&>(lLimit) : static_cast<tool::SentenceSink&>(lIntake));
  SourceReader lReader(mOptions.mSource, *mpSource, mReader, mStopper, *this);
  std::string lReason;
  if (lReader.run(lSink, &lReason) == SourceReader::UNREADABLE) mParts.mFailure.note(EXIT_USAGE, lReason);
  lIntake.finish();
}

// True when somebody waits for it.
bool SourceComponent::leave() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsReading = false;
  return mIsStopRequested;
}

void SourceComponent::join() {
  if (mThread.joinable()) mThread.join();
}

}  // namespace drive
