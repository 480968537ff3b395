#include "RecordingContents.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "LogIds.h"
#include "RunNote.h"
#include "SensorContent.h"

namespace drive {

namespace {

/// Hands on what a function wants to have.
template <class Take>
class TakingSink : public tool::SentenceSink {
 public:
  explicit TakingSink(const Take& nTake) : mTake(nTake) {}
  bool onSentence(std::string_view nSentence) override {
    mTake(nSentence);
    return true;
  }

 private:
  const Take& mTake;
};

/// Closes what it holds.
struct Descriptor {
  ~Descriptor() {
    if (mFd >= 0) ::close(mFd);
  }
  const int mFd;
};

}  // namespace

bool RecordingContents::readLog(const std::string& nPath, std::string* npReason) {
  return read(nPath, tool::LOG_RECORD, npReason);
}

bool RecordingContents::readSensorLog(const std::string& nPath, std::string* npReason) {
  return read(nPath, tool::SENSOR_RECORD, npReason);
}

// A replay ends at the first damage, and drops what it has read ahead by then.
bool RecordingContents::read(const std::string& nPath, tool::RecordKind nKind, std::string* npReason) {
  const Descriptor lFile = {::open(nPath.c_str(), O_RDONLY | O_CLOEXEC)};
  if (lFile.mFd < 0) {
    *npReason = nPath + ": " + std::strerror(errno);
    return false;
  }
  tool::RecordStream lStream(lFile.mFd, this);
  for (tool::Record lRecord; mDamage.empty() && lStream.next(&lRecord) && lRecord.mKind == nKind;) {
    if (mRecords++ == 0) mFirstTick = lRecord.mTick;
    nKind == tool::LOG_RECORD ? take(lRecord) : takeSensor(lRecord);
  }
  if (mRecords > 0) return true;
  *npReason = nPath + ": offset 0: no record of " + (nKind == tool::LOG_RECORD ? "the data logger" : "the sensor log");
  if (lStream.getKind() == tool::LOG_RECORD && nKind != tool::LOG_RECORD)
    *npReason += ", but of the data logger: use --replay";
  if (lStream.getKind() == tool::SENSOR_RECORD && nKind != tool::SENSOR_RECORD)
    *npReason += ", but of the sensor log: use --sys-replay";
  return false;
}

void RecordingContents::onDamage(const tool::RecordDamage& nDamage) {
  if (!mDamage.empty()) return;
  mDamage =
      "offset " + std::to_string(nDamage.mOffset) + ": expected " + nDamage.mExpected + ", found " + nDamage.mFound;
}

void RecordingContents::take(const tool::Record& nRecord) {
  if (nRecord.mId == LOG_ID_GNSS) takeSentence(nRecord.mData, nRecord.mTick);
  if (nRecord.mId == LOG_ID_DEAD_RECKONING) takeReckoned(nRecord.mData);
  if (nRecord.mId == LOG_ID_RUN_NOTE) takeNote(nRecord.mData);
}

void RecordingContents::takeSensor(const tool::Record& nRecord) {
  if (nRecord.mId == SENSOR_ID_RUN_NOTE) return takeNote(nRecord.mData);
  const auto lTake = [&](std::string_view nSentence) {
    nRecord.mId == tool::SENSOR_GNSS_ID ? takeSentence(nSentence, nRecord.mTick) : mStream.onDeadReckoning(nSentence);
  };
  TakingSink<decltype(lTake)> lSink(lTake);
  mSentences.read(nRecord, lSink);
}

void RecordingContents::takeReckoned(std::string_view nSentence) {
  const nfw::DeadReckoningNmeaSentence* const lpSet = mReckoned.onSentence(nSentence);
  if (lpSet == nullptr) return;
  const auto lTake = [&](std::string_view nText) { mStream.onDeadReckoning(nText); };
  TakingSink<decltype(lTake)> lSink(lTake);
  tool::SensorSentences::give(*lpSet, lSink);
}

void RecordingContents::takeNote(std::string_view nNote) {
  if (nNote == runnote::BEGIN) mHasBegin = true;
  const std::optional<StreamTally> lEnd = runnote::parseEnd(nNote);
  if (lEnd && mHasBegin) mLive = lEnd;
}

void RecordingContents::takeSentence(std::string_view nSentence, uint32_t nTick) {
  mStream.onSentence(nSentence);
  mTicks.push_back(nTick);
}

std::string RecordingContents::compare(const StreamTally& nPlayed, bool* npIsSame) const {
  *npIsSame = false;
  if (!mDamage.empty())
    return "the recording is damaged, and cannot be played to its end: " + mDamage + "; nfw-log recover mends it";
  std::string lDifference = nPlayed.difference(mStream.get(), "recorded");
  if (lDifference.empty() && mLive) lDifference = nPlayed.difference(*mLive, "live");
  *npIsSame = lDifference.empty();
  if (!lDifference.empty()) return "different: " + lDifference;
  if (isEmpty()) return "the recording holds no sentences that a replay gives";
  return mLive ? "the same as the recording, and as the run that made it" : "the same as the recording";
}

}  // namespace drive
