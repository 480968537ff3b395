#include "RecordJudge.h"

#include "Format.h"
#include "Messages.h"
#include "SensorContent.h"

namespace logtool {

namespace {

bool isContentRight(const tool::Record& nRecord) {
  return nRecord.mId > tool::SENSOR_DEAD_RECKONING_ID || nRecord.mVersion > 1 ||
         tool::isSensorContent(nRecord.mId, nRecord.mVersion, nRecord.mData);
}

}  // namespace

bool RecordJudge::accepts(const tool::Record& nRecord, tool::RecordDamage* npFault) {
  const bool lIsLog = nRecord.mKind == tool::LOG_RECORD;
  if (lIsLog ? mClock.timeOf(nRecord) != NO_TIME : isContentRight(nRecord)) return true;
  npFault->mOffset = nRecord.mOffset;
  npFault->mLength = nRecord.mWholeSize;
  npFault->mKind = lIsLog ? tool::RecordDamage::TIME : tool::RecordDamage::CONTENT;
  npFault->mExpected = "a date and time";
  npFault->mFound = nRecord.mStamp;
  if (lIsLog) return false;
  const char* const lpHeld = nRecord.mId == tool::SENSOR_GNSS_ID ? "a sentence" : "a report of dead reckoning";
  npFault->mExpected = fmt::format("{} in version {}", lpHeld, nRecord.mVersion);
  npFault->mFound =
      countText(nRecord.mData.size(), "byte") + (nRecord.mData.size() == 1 ? " that is none" : " that are none");
  return false;
}

}  // namespace logtool
