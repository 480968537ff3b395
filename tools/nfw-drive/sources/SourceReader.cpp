#include "SourceReader.h"

#include <algorithm>

namespace drive {

SourceReader::Result SourceReader::run(tool::SentenceSink& nSink, std::string* npReason) {
  for (;;) {
    const Outcome lOutcome = playOnce(nSink, npReason);
    if (lOutcome == FAILED) {
      *npReason = mSpec.mName + ": " + *npReason;
      return UNREADABLE;
    }
    if (lOutcome == OVER || !waitToRetry(*npReason)) return ENDED;
  }
}

SourceReader::Outcome SourceReader::playOnce(tool::SentenceSink& nSink, std::string* npReason) {
  const SentenceSource::OpenResult lResult = mSource.open(npReason);
  if (lResult == SentenceSource::OPEN_FAILED) return mIsAwaited ? AGAIN : FAILED;
  if (lResult == SentenceSource::OPEN_LATER) return AGAIN;
  mIsAwaited = false;
  mListener.onSourceOpen();
  return readAll(nSink, npReason);
}

SourceReader::Outcome SourceReader::readAll(tool::SentenceSink& nSink, std::string* npReason) {
  char lBuffer[16 * 1024];
  int lSize = 0;
  while ((lSize = mSource.read(lBuffer, sizeof(lBuffer), npReason)) > 0) {
    mRetryS = 1;
    if (!mReader.feed(lBuffer, static_cast<size_t>(lSize), nSink)) return OVER;
  }
  if (lSize != SentenceSource::STOPPED) mReader.finish(nSink);
  if (lSize != SentenceSource::BROKEN) return OVER;
  return mSpec.isLive() ? AGAIN : FAILED;
}

// Told once: a device that is plugged in is taken up at once.
bool SourceReader::waitForIt(const std::string& nReason) {
  if (!mIsTold) mListener.onSourceTrouble(mSpec.mName + ": " + nReason + "; waiting for it");
  mIsTold = true;
  return mStopper.waitFor(std::chrono::seconds(1));
}

// False when the wait was ended.
bool SourceReader::waitToRetry(const std::string& nReason) {
  if (mStopper.isRequested()) return false;
  if (mIsAwaited) return waitForIt(nReason);
  mListener.onSourceTrouble(mSpec.mName + ": " + nReason + "; trying again in " + std::to_string(mRetryS) + " s");
  const bool lGoesOn = mStopper.waitFor(std::chrono::seconds(mRetryS));
  mRetryS = std::min(mRetryS * 2, MAX_RETRY_S);
  return lGoesOn;
}

}  // namespace drive
