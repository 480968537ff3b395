#include "Progress.h"

namespace drive {

StreamTally Progress::delivered() const {
  StreamTally lTally;
  lTally.mSentences = mDeliveredSentences;
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) lTally.mRecords[static_cast<size_t>(i)] = mDelivered.get(i);
  lTally.mCombined = mDelivered.get(nfw::NMEA_UNKNOWN);
  lTally.mDeadReckoning = mDeliveredDeadReckoning;
  return lTally;
}

bool Progress::hasReceived(const StreamTally& nExpected) const {
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    if (mDelivered.get(i) < nExpected.mRecords[static_cast<size_t>(i)]) return false;
  }
  return mSentences >= nExpected.mSentences.mCount && mDelivered.get(nfw::NMEA_UNKNOWN) >= nExpected.mCombined &&
         mReckonedSentences >= nExpected.mDeadReckoning.mCount && mDeliveredReports >= mReports;
}

StreamTally Progress::expected() const {
  StreamTally lTally = mExpected.get();
  lTally.mDeadReckoning = mDeliveredDeadReckoning;
  return lTally;
}

}  // namespace drive
