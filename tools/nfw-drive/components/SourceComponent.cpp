#include "SourceComponent.h"

namespace drive {

SourceComponent::SourceComponent(const Options& nOptions, const Parts& nParts)
    : nfw::Component("Source"), mOptions(nOptions), mParts(nParts), mTurns(nOptions.mSources.size(), Turns::Limits()) {}

SourceComponent::~SourceComponent() { mFeeds.clear(); }

// Dead reckoning is of one vehicle, by one receiver: the first.
int SourceComponent::initializeBeforeQuickBootImp() {
  for (size_t i = 0; i < mOptions.mSources.size(); ++i) {
    const SourceFeed::Parts lParts = {mOptions, mParts.mProgress, mParts.mFailure, mStopper, mTurns, *this};
    mFeeds.push_back(std::make_unique<SourceFeed>(i, lParts));
  }
  mpIntake = std::make_unique<Intake>(mParts.mReceiver, mFeeds.front()->motion(), mParts.mpWindows, mOptions.mRecord,
                                      mParts.mProgress);
  return nfw::PHASE_DONE;
}

int SourceComponent::startImp() {
  mReading = mUnfinished = mFeeds.size();
  if (startFeeds()) return nfw::PHASE_PENDING;
  mParts.mFailure.note(EXIT_RUNTIME, "no thread to read the source on");
  requestStop();
  return nfw::PHASE_FAILED;
}

// Those that have not been started do not count.
bool SourceComponent::startFeeds() {
  for (size_t i = 0; i < mFeeds.size(); ++i) {
    if (mFeeds[i]->start(*mpIntake)) continue;
    const std::lock_guard<std::mutex> lLock(mMutex);
    mReading -= mFeeds.size() - i;
    return false;
  }
  return true;
}

int SourceComponent::stopImp() {
  requestStop();
  const std::lock_guard<std::mutex> lLock(mMutex);
  mIsStopRequested = true;
  return mReading > 0 ? nfw::PHASE_PENDING : nfw::PHASE_DONE;
}

int SourceComponent::shutdownImp() {
  for (const auto& lpFeed : mFeeds) lpFeed->join();
  return nfw::PHASE_DONE;
}

void SourceComponent::requestStop() {
  mStopper.request();
  if (mParts.mpWindows != nullptr) mParts.mpWindows->close();
  mTurns.close();
}

void SourceComponent::onFeedEnd() {
  if (mUnfinished.fetch_sub(1) == 1) finish();
  if (leave()) setStopComplete();
}

// All have ended. The start is complete of sources that never opened, too.
void SourceComponent::finish() {
  mpIntake->finish();
  mParts.mEvents.notify(Events::SOURCE_ENDED);
  setStartComplete();
}

// True when nobody reads any more, and somebody waits for that.
bool SourceComponent::leave() {
  const std::lock_guard<std::mutex> lLock(mMutex);
  return --mReading == 0 && mIsStopRequested;
}

}  // namespace drive
