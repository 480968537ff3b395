#include "LiveView.h"

#include <algorithm>

#include "Format.h"
#include "PlayTimeText.h"

namespace drive {

namespace {

const std::chrono::seconds SILENCE{3};  // of a receiver, until it is told

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

LiveView::LiveView(const Options& nOptions, const ViewParts& nParts)
    : mParts(nParts),
      mIsLive(!nOptions.mReplay.isWanted() && nOptions.mSource.isLive()),
      mPlayback(nOptions.mReplay),
      mLog(LOG_LINES, nParts.mKinds) {
  mPicture.mSource = nOptions.getName();
  mPicture.mIsReplay = nOptions.mReplay.isWanted();
}

void LiveView::begin() {
  mLog.install();
  tick();
}

void LiveView::showRaw(std::string_view nSentence) {
  EpochView::showRaw(nSentence);
  mLastSentence = Clock::now();
  mIsUnderWay = true;
}

// The last sentence of an epoch is known by the silence behind it: nobody waits for the next one to see it.
void LiveView::tick() {
  if (mIsUnderWay && Clock::now() - mLastSentence >= QUIET) {
    mShown = mState;
    mIsUnderWay = false;
  }
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
  const auto lSilence = Clock::now() - mLastSentence;
  mPicture.mSilence = 0;
  if (mIsLive && lSilence >= SILENCE) {
    mPicture.mSilence = static_cast<unsigned int>(std::chrono::floor<std::chrono::seconds>(lSilence).count());
  }
  lookAtFix();
  lookAtSky();
  lookAtCounts();
  mPicture.mLogLines = mLog.lines(nLogLines);
  lookAtLogs();
  if (mPicture.mIsReplay) lookAtReplay();
}

void LiveView::lookAtFix() {
  mPicture.mTime = mShown.time();
  mPicture.mFix = mShown.fix();
  mPicture.mQuality = mShown.quality() != nullptr ? mShown.quality() : "";
  mPicture.mReceived = mShown.received();
  mPicture.mReckoned = mState.reckonedFor(mShown);
  mPicture.mIsReckonedOfEpoch = mPicture.mReckoned.has_value();
  if (!mPicture.mReckoned) mPicture.mReckoned = mState.lastReckoned();
  mPicture.mPdop = mShown.pdop();
  mPicture.mHdop = mShown.hdop();
  mPicture.mVdop = mShown.vdop();
  mPicture.mUsed = mShown.used();
}

// Some receivers tell their satellites every few epochs only.
void LiveView::lookAtSky() {
  if (!mShown.sky().isTold()) return;
  mPicture.mSatellites = mShown.sky().satellites();
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

void LiveView::lookAtReplay() {
  const nfw::LogPlayPosition lAt = mPlayback.position();
  if (lAt.mLengthMs == 0) return;  // over
  mPicture.mReplay =
      fmt::format("{} of {}   rate {:g}{}", tool::playTimeText(lAt.mPositionMs), tool::playTimeText(lAt.mLengthMs),
                  lAt.mRate / 1000.0, lAt.mIsPaused ? "   paused" : "");
}

}  // namespace drive
