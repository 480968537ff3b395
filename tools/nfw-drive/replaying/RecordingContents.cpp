#include "RecordingContents.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Descriptor.h"
#include "Format.h"
#include "LogIds.h"
#include "PlayTimeText.h"
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

}  // namespace

// A replay ends at the first damage, and drops what it has read ahead by then.
bool RecordingContents::read(const ReplayOptions& nReplay, std::string* npReason) {
  mReplay = nReplay;
  const tool::RecordKind lKind = nReplay.mFiles.empty() ? tool::SENSOR_RECORD : tool::LOG_RECORD;
  for (const std::string& lPath : lKind == tool::LOG_RECORD ? nReplay.mFiles : nReplay.mSensorFiles) {
    if (mDamage.empty() && !readFile(lPath, lKind, npReason)) return false;
  }
  if (nReplay.mFromMs <= getLength() || !mDamage.empty()) return true;
  *npReason = fmt::format("--from: {} ends {} behind its first record", nReplay.mName, tool::playTimeText(getLength()));
  return false;
}

bool RecordingContents::readFile(const std::string& nPath, tool::RecordKind nKind, std::string* npReason) {
  const tool::Descriptor lFile(nPath);
  if (!lFile.isOpen()) {
    *npReason = nPath + ": " + std::strerror(errno);
    return false;
  }
  mFile = nPath;
  mTime.beginFile();
  tool::RecordStream lStream(lFile.get(), this);
  bool lIsAny = false;
  for (tool::Record lRecord; mDamage.empty() && lStream.next(&lRecord) && lRecord.mKind == nKind; lIsAny = true) {
    takeRecord(lRecord);
  }
  if (lIsAny) return true;
  *npReason = nPath + ": offset 0: no record of " + (nKind == tool::LOG_RECORD ? "the data logger" : "the sensor log");
  if (lStream.getKind() == tool::LOG_RECORD && nKind != tool::LOG_RECORD)
    *npReason += ", but of the data logger: use --replay";
  if (lStream.getKind() == tool::SENSOR_RECORD && nKind != tool::SENSOR_RECORD)
    *npReason += ", but of the sensor log: use --sys-replay";
  return false;
}

// What the end of the part leaves out may be damaged. Records of several threads lie a little out of order.
bool RecordingContents::isOver() const { return mReplay.mToMs && mOffset > int64_t{*mReplay.mToMs} + 1000; }

void RecordingContents::onDamage(const tool::RecordDamage& nDamage) {
  if (!mDamage.empty() || isOver()) return;
  mDamage =
      fmt::format("{}: offset {}: expected {}, found {}", mFile, nDamage.mOffset, nDamage.mExpected, nDamage.mFound);
}

void RecordingContents::takeRecord(const tool::Record& nRecord) {
  mOffset = mTime.next(nRecord);
  if (mOffset < mReplay.mFromMs || (mReplay.mToMs && mOffset >= *mReplay.mToMs)) return;
  nRecord.mKind == tool::LOG_RECORD ? take(nRecord) : takeSensor(nRecord);
}

void RecordingContents::take(const tool::Record& nRecord) {
  if (nRecord.mId == LOG_ID_GNSS) takeSentence(nRecord.mData);
  if (nRecord.mId == LOG_ID_DEAD_RECKONING) takeReckoned(nRecord.mData);
  if (nRecord.mId == LOG_ID_RUN_NOTE) takeNote(nRecord.mData);
}

void RecordingContents::takeSensor(const tool::Record& nRecord) {
  if (nRecord.mId == SENSOR_ID_RUN_NOTE) return takeNote(nRecord.mData);
  const auto lTake = [&](std::string_view nSentence) {
    nRecord.mId == tool::SENSOR_GNSS_ID ? takeSentence(nSentence) : mStream.onDeadReckoning(nSentence);
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

// Of several runs none is the whole.
void RecordingContents::takeNote(std::string_view nNote) {
  if (nNote == runnote::BEGIN) ++mBegins;
  const std::optional<StreamTally> lEnd = runnote::parseEnd(nNote);
  if (lEnd && mBegins == 1) mLive = lEnd;
  if (mBegins > 1 || mReplay.isPart()) mLive.reset();
}

void RecordingContents::takeSentence(std::string_view nSentence) {
  mStream.onSentence(nSentence);
  mDues.push_back(static_cast<uint32_t>(std::max<int64_t>(mOffset - mReplay.mFromMs, 0)));
}

std::string RecordingContents::compare(const StreamTally& nPlayed, bool* npIsSame) const {
  *npIsSame = false;
  if (!mDamage.empty())
    return "the recording is damaged, and cannot be played to its end: " + mDamage + "; nfw-log recover mends it";
  std::string lDifference = nPlayed.difference(mStream.get(), "recorded");
  const bool lIsRun = mLive && (isOneFile() || *mLive == get());  // files that are left out are no fault of the replay
  if (lDifference.empty() && lIsRun) lDifference = nPlayed.difference(*mLive, "live");
  *npIsSame = lDifference.empty();
  if (!lDifference.empty()) return "different: " + lDifference;
  const char* const lpWhat = mReplay.isPart() ? "this part of the recording" : "the recording";
  if (isEmpty()) return fmt::format("{} holds no sentences that a replay gives", lpWhat);
  return fmt::format("the same as {}{}", lpWhat, lIsRun ? ", and as the run that made it" : "");
}

}  // namespace drive
