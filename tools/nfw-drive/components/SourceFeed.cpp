#include "SourceFeed.h"

#include <pthread.h>

#include "DriveLog.h"
#include "StartThread.h"

namespace drive {

SourceFeed::SourceFeed(size_t nNumber, const Parts& nParts)
    : mNumber(nNumber),
      mParts(nParts),
      mAddress(nParts.mOptions.mSources[nNumber]),
      mProgress(nParts.mProgress.mSources[nNumber]),
      mReader(mProgress.mLines, nParts.mOptions.mJudgesChecksums),
      mpSource(createSource(mAddress, nParts.mOptions.mSimulator, nParts.mStopper)) {}

bool SourceFeed::start(Intake& nIntake) {
  return tool::startThread(&mThread, [this, &nIntake] { run(nIntake); });
}

void SourceFeed::join() {
  if (mThread.joinable()) mThread.join();
}

void SourceFeed::onSourceOpen() {
  mProgress.mState = SourceProgress::OPEN;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_INFO, "source %s is open", mAddress.mName.c_str());
  mParts.mListener.onFeedOpen();
}

void SourceFeed::onSourceTrouble(const std::string& nMessage) {
  if (mProgress.mState == SourceProgress::OPEN) mProgress.mState = SourceProgress::BROKEN;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_WARNING, "source %s", nMessage.c_str());
}

void SourceFeed::run(Intake& nIntake) {
  ::pthread_setname_np(::pthread_self(), "drive_Source");
  try {
    readSource(nIntake);
  } catch (const std::exception& lError) {
    fail(EXIT_RUNTIME, mAddress.mName + ": " + lError.what());
  }
  if (mProgress.mState != SourceProgress::FAILED) mProgress.mState = SourceProgress::ENDED;
  mParts.mListener.onFeedEnd();
}

void SourceFeed::readSource(Intake& nIntake) {
  const PlayOptions& lPlay = mAddress.mPlay;
  const bool lIsLimited = mParts.mOptions.mRecord.isWanted() && lPlay.mPaced && lPlay.mSpeed == 0.0;
  SourceTurn lTurn(mNumber, mParts.mTurns, nIntake);
  RateLimit lLimit(mParts.mStopper, lTurn, mParts.mOptions.mSources.size());
  PacedSink lSink(lPlay, mParts.mStopper,
                  lIsLimited ? static_cast<tool::SentenceSink&>(lLimit) : static_cast<tool::SentenceSink&>(lTurn));
  SourceReader lReader(mAddress, *mpSource, mReader, mParts.mStopper, *this);
  std::string lReason;
  if (lReader.run(lSink, &lReason) == SourceReader::UNREADABLE) fail(EXIT_USAGE, lReason);
  mProgress.mLost = mpSource->lost();
  lTurn.finish();
}

// What fails beside others does not end them: it is told at once, and again in the end.
void SourceFeed::fail(ExitCode nExit, const std::string& nReason) {
  mProgress.mState = SourceProgress::FAILED;
  if (mParts.mOptions.mSources.size() == 1) return mParts.mFailure.note(nExit, nReason);
  mProgress.mFailure = nReason;
  mProgress.mExit = nExit;
  APPLOG(LOG_TYPE_DRIVE, nfw::LOG_LEVEL_ERROR, "source %s", nReason.c_str());
}

}  // namespace drive
