#include "DeadReckoner.h"

#include <cstring>

#include "SentenceTime.h"

namespace drive {

namespace {

// hhmmss.sss
double clockReading(int64_t nTimeMs) {
  const int64_t lSeconds = nTimeMs / 1000;
  const int64_t lClock = lSeconds / 3600 * 10000 + lSeconds / 60 % 60 * 100 + lSeconds % 60;
  return static_cast<double>(lClock * 1000 + nTimeMs % 1000) / 1000.0;
}

void copyTalker(const char (&nFrom)[2], char (&nTo)[2]) { memcpy(nTo, nFrom, sizeof(nTo)); }

}  // namespace

const DeadReckoner::Report* DeadReckoner::onSentence(std::string_view nSentence) {
  const int64_t lTimeMs = tool::sentenceTime(nSentence);
  const Report* lpReport = nullptr;
  if (lTimeMs >= 0 && lTimeMs != mTimeMs) {
    lpReport = finish();
    beginEpoch(lTimeMs);
  }
  mRecords.take(nSentence);
  mIsComplete = mCycle.onSentence(nSentence);
  return lpReport;
}

const DeadReckoner::Report* DeadReckoner::takeComplete() {
  if (!mIsComplete || mIsReported || mTimeMs < 0) return nullptr;
  mIsReported = true;
  return endEpoch();
}

const DeadReckoner::Report* DeadReckoner::finish() {
  const Report* const lpReport = mTimeMs >= 0 && !mIsReported ? endEpoch() : nullptr;
  mTimeMs = -1;
  return lpReport;
}

void DeadReckoner::beginEpoch(int64_t nTimeMs) {
  mTimeMs = nTimeMs;
  mIsReported = false;
  mCycle.begin();
  mRecords.clear();
  if (mpMotion != nullptr) mMotion = {mpMotion->speed(), mpMotion->course()};
}

const DeadReckoner::Report* DeadReckoner::endEpoch() {
  if (!mRecords.isTelling()) return nullptr;
  const Motion* const lpMotion = mpMotion != nullptr ? &mMotion : nullptr;
  mReport = mRecords.get();
  // Whoever came lends its talker to whoever did not.
  if (!mRecords.hasRmc()) copyTalker(mReport.gga.talker, mReport.rmc.talker);
  if (!mRecords.hasGga()) copyTalker(mReport.rmc.talker, mReport.gga.talker);
  if (!mRecords.hasVtg()) copyTalker(mReport.rmc.talker, mReport.vtg.talker);
  if (mRecords.hasDate()) mReckoning.setDate(mRecords.getDate());
  if (mRecords.getFix()) {
    mReckoning.setFix(mRecords, lpMotion, mTimeMs);
    writeFix();
  } else if (mReckoning.isKnown()) {
    mReckoning.goOn(lpMotion, mTimeMs);
    writeEstimate();
  } else {
    writeNothing();
  }
  mReport.rmc.time = mReport.gga.time = mReport.pubx.time = clockReading(mTimeMs);
  return &mReport;
}

// What the sentences told stays as it is.
void DeadReckoner::writeFix() {
  if (!mRecords.hasRmc()) mReckoning.write(&mReport.rmc);
  if (!mRecords.hasVtg()) mReckoning.write(&mReport.vtg);
  if (!mRecords.hasGga()) mReckoning.write(&mReport.gga);
  if (!mRecords.hasPubx()) mReckoning.write(&mReport.pubx);
}

void DeadReckoner::writeEstimate() {
  mReckoning.write(&mReport.rmc);
  mReckoning.write(&mReport.vtg);
  mReckoning.write(&mReport.gga);
  mReckoning.write(&mReport.pubx);
  for (unsigned int i = 0; i < mReport.gsaCount; ++i) mReckoning.write(&mReport.gsa[i]);
}

void DeadReckoner::writeNothing() {
  mReport.rmc.status = 'V';
  mReport.rmc.mode = mReport.vtg.mode = 'N';
  mReport.gga.quality = mReport.pubx.status = 0;
}

}  // namespace drive
