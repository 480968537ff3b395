#include "TrackRecords.h"

#include "Messages.h"
#include "NfwAppLog.h"
#include "RecordType.h"
#include "RecordingIds.h"
#include "SensorContent.h"

namespace logtool {

namespace {

enum Role { RECEIVER, DEAD_RECKONING, OTHERS };  // of an id; from OTHERS on one each

int roleOf(tool::RecordKind nKind, int nId) {
  const bool lIsLog = nKind == tool::LOG_RECORD;
  if (nId == (lIsLog ? tool::LOG_GNSS_ID : tool::SENSOR_GNSS_ID)) return RECEIVER;
  return nId == (lIsLog ? tool::LOG_DEAD_RECKONING_ID : tool::SENSOR_DEAD_RECKONING_ID) ? DEAD_RECKONING : OTHERS + nId;
}

bool hasSentences(const tool::Record& nRecord) {
  if (nRecord.mKind == tool::LOG_RECORD) return isSentenceText(nRecord.mData) && nRecord.mId != nfw::APPLOG_LOGGER_ID;
  return nRecord.mId <= tool::SENSOR_DEAD_RECKONING_ID;
}

std::string_view moved(std::string_view nView, std::string_view nFrom, const std::string& nTo) {
  return nView.empty() ? nView
                       : std::string_view(nTo).substr(static_cast<size_t>(nView.data() - nFrom.data()), nView.size());
}

}  // namespace

TrackRecords::TrackRecords(Run& nRun, TrackChoice nChoice)
    : mRun(nRun),
      mChoice(nChoice),
      mIsAsked(!nRun.getOptions().mSelection.mIds.empty()),
      mHasTypes(!nRun.getOptions().mSelection.mTypes.empty()) {}

void TrackRecords::read(const Recording& nRecording, Problems& nProblems, const Use& nUse) {
  begin(nRecording, nUse);
  mRun.readAll(nRecording, nProblems, [&](const tool::Record& nRecord, Selector& nSelector, bool nIsSelected) {
    return take(nRecord, nSelector, nIsSelected);
  });
  end(nRecording);
}

void TrackRecords::begin(const Recording& nRecording, const Use& nUse) {
  if (nRecording.mDirectory != mDirectory) {
    for (auto& lCovered : mCovered) lCovered.clear();
  }
  mDirectory = nRecording.mDirectory;
  mAsksTime = mHasTypes || (nRecording.mHasBothKinds && mChoice != TRACKS_OF_EACH_RECORDING);
  mpUse = &nUse;
  mChosen = -1;
  mOthers.clear();
  mClocks.clear();
  mLeftOut = 0;
}

TrackRecords TrackRecords::lookAhead(const Recording& nRecording, const Use& nUse) {
  static const Use NO_USE = [](const tool::Record&, const Place&) { return true; };
  begin(nRecording, NO_USE);
  TrackRecords lRecords = *this;
  lRecords.mpUse = &nUse;
  if (nRecording.mPaths.front() != "-") decide(nRecording);
  lRecords.mChosen = mChosen;
  return lRecords;
}

/// What of a directory's log leaves out of its sensor log is known only at its end.
void TrackRecords::decide(const Recording& nRecording) {
  Silence lSilence;  // what is wrong is told when it is read
  RecordingReader lReader(nRecording, lSilence);
  Selector lSelector(mRun.getOptions().mSelection);
  const auto lIsDecided = [&] { return !nRecording.mHasBothKinds && (mIsAsked || mChosen >= 0); };
  tool::Record lRecord;
  while (!lIsDecided() && !lSelector.isOver() && lReader.next(&lRecord)) {
    const bool lIsSelected = lSelector.takes(lRecord);
    take(lRecord, lSelector, lIsSelected);
  }
  if (!mHeld.empty()) choose(mHeld.front().mRecord.mId);
}

bool TrackRecords::take(const tool::Record& nRecord, Selector& nSelector, bool nIsSelected) {
  if (!(nIsSelected || mAsksTime) || !hasSentences(nRecord)) return true;
  const int64_t lUtc = mAsksTime ? utcOf(nRecord, nSelector) : NO_TIME;
  if (!nIsSelected) return true;
  mKind = nRecord.mKind;
  return offer(nRecord, {nSelector.getTimeline().getElapsedMs(), lUtc});
}

int64_t TrackRecords::utcOf(const tool::Record& nRecord, Selector& nSelector) {
  if (nRecord.mKind == tool::SENSOR_RECORD) return nSelector.timeOf(nRecord);
  return mClocks[nRecord.mId].tell(tool::sentenceDay(nRecord.mData), tool::sentenceTime(nRecord.mData), nRecord.mTick);
}

bool TrackRecords::offer(const tool::Record& nRecord, const Place& nPlace) {
  if (mIsAsked || nRecord.mId == mChosen) return use(nRecord, nPlace);
  if (mChoice != TRACK_OF_RECEIVER && roleOf(mKind, nRecord.mId) == DEAD_RECKONING) return use(nRecord, nPlace);
  if (mChosen >= 0) {
    if (mOthers.size() < MAX_OTHERS) mOthers.insert(nRecord.mId);
    return true;
  }
  if (roleOf(mKind, nRecord.mId) == RECEIVER) return choose(nRecord.mId) && use(nRecord, nPlace);
  hold(nRecord, nPlace);
  const bool lIsEnough = mHeldBytes > MAX_HELD || nPlace.mElapsedMs - mHeld.front().mPlace.mElapsedMs > MAX_HELD_MS;
  return !lIsEnough || choose(mHeld.front().mRecord.mId);
}

void TrackRecords::hold(const tool::Record& nRecord, const Place& nPlace) {
  mHeld.push_back({std::string(nRecord.mBytes), nRecord, nPlace});
  mHeldBytes += nRecord.mBytes.size() + sizeof(Held);
}

/// What was held of the id is the track's begin.
bool TrackRecords::choose(int nId) {
  mChosen = nId;
  const std::vector<Held> lHeld = std::move(mHeld);
  mHeld.clear();
  mHeldBytes = 0;
  for (const Held& lEntry : lHeld) {
    tool::Record lRecord = lEntry.mRecord;
    lRecord.mStamp = moved(lRecord.mStamp, lRecord.mBytes, lEntry.mBytes);
    lRecord.mData = moved(lRecord.mData, lRecord.mBytes, lEntry.mBytes);
    lRecord.mBytes = lEntry.mBytes;
    if (!offer(lRecord, lEntry.mPlace)) return false;
  }
  return true;
}

bool TrackRecords::use(const tool::Record& nRecord, const Place& nPlace) {
  if (mAsksTime && isCovered(nRecord, nPlace.mUtcMs)) {
    ++mLeftOut;
    return true;
  }
  return (*mpUse)(nRecord, nPlace);
}

/// Of what the other kind tells nothing is taken, nor what has no time yet: it comes before what has.
bool TrackRecords::isCovered(const tool::Record& nRecord, int64_t nUtcMs) {
  const int lRole = mIsAsked || mChoice != TRACK_OF_RECEIVER ? roleOf(mKind, nRecord.mId) : RECEIVER;
  if (mDirectory == 0 || lRole >= OTHERS) return false;
  const size_t lKind = mKind == tool::LOG_RECORD ? 0 : 1;
  const Coverage& lOther = mCovered[1 - lKind][lRole];
  if (!lOther.isEmpty() && (nUtcMs == NO_TIME || lOther.has(nUtcMs))) return true;
  mCovered[lKind][lRole].add(nUtcMs);
  return false;
}

void TrackRecords::end(const Recording& nRecording) {
  if (!mHeld.empty()) choose(mHeld.front().mRecord.mId);
  if (mChoice == TRACKS_OF_EACH_RECORDING) return;
  for (const int lId : mOthers) {
    tell("{}: taken is {} (id {}); {} (id {}) has sentences too: --id {} takes it, --id {},{} both", nRecording.mName,
         trackName(mKind, mChosen), mChosen, trackName(mKind, lId), lId, lId, mChosen, lId);
  }
  if (mLeftOut > 0) {
    tell("{}: {} left out: another recording of the directory tells of the same time", nRecording.mName,
         countText(mLeftOut, "record"));
  }
}

std::string trackName(tool::RecordKind nKind, int nId) {
  switch (roleOf(nKind, nId)) {
    case RECEIVER:
      return "receiver";
    case DEAD_RECKONING:
      return "dead reckoning";
    default:
      return "id " + std::to_string(nId);
  }
}

}  // namespace logtool
