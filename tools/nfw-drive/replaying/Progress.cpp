#include "Progress.h"

namespace drive {

StreamTally Progress::delivered() const {
  StreamTally lTally;
  lTally.mSentences = mDeliveredSentences;
  for (size_t i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    lTally.mRecords[i] = mDelivered.get(static_cast<int>(i)) - mBefore.mRecords[i];
  }
  lTally.mCombined = mDelivered.get(nfw::NMEA_UNKNOWN) - mBefore.mCombined;
  lTally.mDeadReckoning = mDeliveredDeadReckoning;
  return lTally;
}

StreamTally Progress::deliveredInAll() const {
  StreamTally lTally = delivered();
  lTally.mSentences.mCount += mBefore.mSentences.mCount;
  for (size_t i = 0; i < tool::KIND_NUM; ++i) lTally.mRecords[i] += mBefore.mRecords[i];
  lTally.mCombined += mBefore.mCombined;
  lTally.mDeadReckoning.mCount += mBefore.mDeadReckoning.mCount;
  return lTally;
}

void Progress::beginRound() {
  mBefore = deliveredInAll();
  mDeliveredSentences = TextTally();
  mDeliveredDeadReckoning = TextTally();
}

void Progress::awaitRound(const StreamTally* npRound) {
  if (npRound == nullptr) {
    mSentenceBeginning.open();
    mReckonedBeginning.open();
    return;
  }
  mSentenceBeginning.await(npRound->mSentences);
  mReckonedBeginning.await(npRound->mDeadReckoning);
}

bool Progress::Beginning::isPassed(std::string_view nText) {
  if (isPassed()) return true;
  TextTally lTally;
  lTally.add(nText);
  if (lTally.mSum == mAwaited) open();
  return isPassed();
}

bool Progress::takesSentence(std::string_view nSentence) {
  if (!mSentenceBeginning.isPassed(nSentence)) return false;
  const StreamTally* const lpLimit = mpLimit;
  return lpLimit == nullptr || mSentences - mBefore.mSentences.mCount < lpLimit->mSentences.mCount;
}

bool Progress::takesRecord(int nKind) const {
  if (!mSentenceBeginning.isPassed()) return false;
  const StreamTally* const lpLimit = mpLimit;
  const auto lKind = static_cast<size_t>(nKind);
  return lpLimit == nullptr || mDelivered.get(nKind) - mBefore.mRecords[lKind] < lpLimit->mRecords[lKind];
}

bool Progress::takesCombined() const {
  if (!mSentenceBeginning.isPassed()) return false;
  const StreamTally* const lpLimit = mpLimit;
  return lpLimit == nullptr || mDelivered.get(nfw::NMEA_UNKNOWN) - mBefore.mCombined < lpLimit->mCombined;
}

bool Progress::takesReckoned(std::string_view nSentence) {
  if (!mReckonedBeginning.isPassed(nSentence)) return false;
  const StreamTally* const lpLimit = mpLimit;
  return lpLimit == nullptr || mReckonedSentences - mBefore.mDeadReckoning.mCount < lpLimit->mDeadReckoning.mCount;
}

bool Progress::hasReceived(const StreamTally& nExpected) const {
  for (size_t i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    if (mDelivered.get(static_cast<int>(i)) - mBefore.mRecords[i] < nExpected.mRecords[i]) return false;
  }
  return mSentences - mBefore.mSentences.mCount >= nExpected.mSentences.mCount &&
         mDelivered.get(nfw::NMEA_UNKNOWN) - mBefore.mCombined >= nExpected.mCombined &&
         mReckonedSentences - mBefore.mDeadReckoning.mCount >= nExpected.mDeadReckoning.mCount &&
         mDeliveredReports >= mReports;
}

StreamTally Progress::expected() const {
  StreamTally lTally = mExpected.get();
  lTally.mDeadReckoning = mDeliveredDeadReckoning;
  return lTally;
}

}  // namespace drive
