#include "LiveView.h"

#include <algorithm>

#include "Format.h"
#include "PlayTimeText.h"

namespace drive {

namespace {

std::string kindsText(const Progress& nProgress) {
  std::string lText;
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    lText += fmt::format("{} {} ", tool::kindName(i), nProgress.mDelivered.get(i));
  }
  return lText;
}

std::string rejectsText(const Progress& nProgress) {
  std::string lText = fmt::format("{}", nProgress.rejected());
  for (int i = tool::LINE_NOISE; i < tool::LINE_VERDICT_NUM; ++i) {
    const auto lVerdict = static_cast<tool::LineVerdict>(i);
    const uint64_t lCount = nProgress.mLines.get(lVerdict);
    if (lCount > 0) lText += fmt::format("  {} {}", tool::lineVerdictName(lVerdict), lCount);
  }
  return nProgress.mUnparsable.total() > 0 ? lText + "  " + nProgress.unparsableText() : lText;
}

// In the order in which people name them, not by the alphabet.
int rankOf(std::string_view nSystem) {
  static const std::string_view SYSTEMS[] = {"GPS", "SBAS", "GLONASS", "Galileo", "BeiDou", "QZSS", "NavIC"};
  return static_cast<int>(std::find(std::begin(SYSTEMS), std::end(SYSTEMS), nSystem) - std::begin(SYSTEMS));
}

}  // namespace

LiveView::LiveView(const Options& nOptions, const ViewParts& nParts, const std::vector<const ShownEpoch*>& nOthers)
    : mParts(nParts),
      mIsLive(!nOptions.mReplay.isWanted() && nOptions.mSources.front().isLive()),
      mPlayback(nOptions.mReplay),
      mEpochs{this},
      mLog(LOG_LINES, nParts.mKinds) {
  mPicture.mSource = nOptions.getName();
  mPicture.mIsReplay = nOptions.mReplay.isWanted();
  mEpochs.insert(mEpochs.end(), nOthers.begin(), nOthers.end());
}

void LiveView::begin() {
  mLog.install();
  tick();
}

void LiveView::tick() {
  ShownEpoch::tick();
  size_t lWidth = 0, lHeight = 0;
  mParts.mScreen.getSize(&lWidth, &lHeight);
  look(lHeight);
  mParts.mScreen.draw(layOut(mPicture, lWidth, lHeight));
}

void LiveView::end() {
  EpochView::end();
  look(LOG_LINES);
  size_t lWidth = 0, lHeight = 0;
  mParts.mScreen.getSize(&lWidth, &lHeight);
  mParts.mScreen.leave();
  for (const PictureRow& lRow : layOutRest(mPicture, lWidth)) mParts.mOutput.write(lRow.text() + "\n");
  mParts.mOutput.flush();
  mLog.remove();
}

void LiveView::look(size_t nLogLines) {
  mPicture.mPage = mParts.mPages.get();
  mPicture.mHasKeys = mParts.mPages.hasKeys();
  mPicture.mSilence = mIsLive ? silence() : 0;
  lookAtFix();
  lookAtSky();
  lookAtCounts();
  mPicture.mLogLines = mLog.lines(nLogLines);
  lookAtLogs();
  if (mPicture.mIsReplay) lookAtReplay();
  if (mEpochs.size() > 1) lookAtSources();
}

void LiveView::lookAtFix() {
  mPicture.mTime = shown().time();
  mPicture.mFix = shown().fix();
  mPicture.mQuality = shown().quality() != nullptr ? shown().quality() : "";
  mPicture.mReceived = shown().received();
  mPicture.mReckoned = mState.reckonedFor(shown());
  mPicture.mIsReckonedOfEpoch = mPicture.mReckoned.has_value();
  if (!mPicture.mReckoned) mPicture.mReckoned = mState.lastReckoned();
  mPicture.mPdop = shown().pdop();
  mPicture.mHdop = shown().hdop();
  mPicture.mVdop = shown().vdop();
  mPicture.mUsed = shown().used();
}

// Some receivers tell their satellites every few epochs only.
void LiveView::lookAtSky() {
  if (!shown().sky().isTold()) return;
  mPicture.mSatellites = shown().sky().satellites();
  std::stable_sort(mPicture.mSatellites.begin(), mPicture.mSatellites.end(),
                   [](const Sky::Satellite& nLeft, const Sky::Satellite& nRight) {
                     return rankOf(nLeft.mSystem) < rankOf(nRight.mSystem);
                   });
  mPicture.mSkyTime = mPicture.mTime;
}

void LiveView::lookAtCounts() {
  mPicture.mSentences = mParts.mProgress.mSentences;
  mPicture.mKinds = kindsText(mParts.mProgress);
  mPicture.mRejects = rejectsText(mParts.mProgress);
  mPicture.mRejected = mParts.mProgress.rejected();
  mPicture.mErrors = mLog.errors();
  mPicture.mWarnings = mLog.warnings();
  mPicture.mOthers = mLog.others();
}

void LiveView::lookAtLogs() {
  mPicture.mLogs.clear();
  const auto lAdd = [this](const char* npName, const LogReport& nLog) {
    const nfw::LogRecordCounts lCounts = nLog.getCounts();
    if (nLog.isWanted()) mPicture.mLogs.push_back({npName, lCounts.mRecorded, lCounts.missing(), lCounts.mBytes});
  };
  lAdd("Data log", mParts.mRecorder.getLog());
  lAdd("Sensor log", mParts.mRecorder.getSensorLog());
}

void LiveView::lookAtSources() {
  mPicture.mSources.clear();
  for (size_t i = 0; i < mEpochs.size(); ++i) {
    const SourceProgress& lSource = mParts.mProgress.mSources[i];
    const FixEpoch& lEpoch = mEpochs[i]->shown();
    const unsigned int lSilence = lSource.mAddress.isLive() ? mEpochs[i]->silence() : 0;
    mPicture.mSources.push_back({lSource.mAddress.mLabel, lSource.stateText(), lEpoch.fix(), lEpoch.time(),
                                 lEpoch.received(), lSilence, lSource.mLines.total(), lSource.rejected()});
  }
}

void LiveView::lookAtReplay() {
  const nfw::LogPlayPosition lAt = mPlayback.position();
  if (lAt.mLengthMs == 0) return;  // over
  mPicture.mReplay =
      fmt::format("{} of {}   rate {:g}{}", tool::playTimeText(lAt.mPositionMs), tool::playTimeText(lAt.mLengthMs),
                  lAt.mRate / 1000.0, lAt.mIsPaused ? "   paused" : "");
}

}  // namespace drive
