#include "Progress.h"

#include <fmt/format.h>

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

std::string Progress::unparsableText() const {
  const std::string lText = fmt::format("unparsable {}", mUnparsable.total());
  return mWithoutMode == 0 ? lText
                           : lText + fmt::format(" ({} without a mode field: NMEA before 2.3)", mWithoutMode.load());
}

std::string Progress::explainSilence() const {
  if (mLines.total() == 0) return "came";
  if (mUnparsable.total() > 0) return "could be parsed: " + unparsableText();
  if (mLines.get(tool::LINE_BAD_CHECKSUM) > 0) return "with a right checksum";
  return "in what came: is it NMEA 0183, and a serial line's baud rate right?";
}

StreamTally Progress::expected() const {
  StreamTally lTally = mExpected.get();
  lTally.mDeadReckoning = mDeliveredDeadReckoning;
  return lTally;
}

}  // namespace drive
