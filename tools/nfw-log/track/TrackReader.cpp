#include "TrackReader.h"

#include <filesystem>
#include <map>

#include "EpochBuilder.h"
#include "SortedRecords.h"
#include "TrackSorter.h"

namespace logtool {

namespace {

const size_t MAX_IDS = 64;  // with sentences; more are not worth their memory

/// The points of one id of a recording; the sink is told of the track with the first.
class NamedTrack : public TrackSink {
 public:
  NamedTrack(TrackSink& nSink, size_t* npTracks, const std::string& nName)
      : mSink(nSink), mpTracks(npTracks), mName(nName), mBuilder(*this) {}

  EpochBuilder& getBuilder() { return mBuilder; }

  void onPoint(const TrackPoint& nPoint) override {
    if (!mIsTold) tellTrack();
    TrackPoint lPoint = nPoint;
    lPoint.mTrack = mNumber;
    mSink.onPoint(lPoint);
  }
  void onEpochsWithoutFix(size_t /*nTrack*/, uint64_t nEpochs) override {
    mEarly += nEpochs;
    if (mIsTold) tellEarly();
  }
  void onSky(const Sky& nSky) override { mSink.onSky(nSky); }
  bool wantsSky() const override { return mSink.wantsSky(); }

 private:
  void tellTrack() {
    mSink.onTrack(mNumber = (*mpTracks)++, mName);
    mIsTold = true;
    tellEarly();
  }
  void tellEarly() {
    if (mEarly > 0) mSink.onEpochsWithoutFix(mNumber, mEarly);
    mEarly = 0;
  }

  TrackSink& mSink;
  size_t* const mpTracks;
  const std::string mName;
  EpochBuilder mBuilder;
  bool mIsTold = false;
  size_t mNumber = 0;
  uint64_t mEarly = 0;  // epochs without a position, until the track is told of
};

}  // namespace
/// The tracks of a recording, by their ids.
class Tracks {
 public:
  /// @param nPrefix of their names @param npTracks how many there were, of all recordings
  Tracks(TrackSink& nSink, const std::string& nPrefix, size_t* npTracks)
      : mSink(nSink), mPrefix(nPrefix), mpTracks(npTracks) {}

  EpochBuilder* of(const tool::Record& nRecord) {
    if (mpLast != nullptr && nRecord.mId == mLastId) return mpLast;
    auto lFound = mTracks.find(nRecord.mId);
    if (lFound == mTracks.end()) {
      if (mTracks.size() >= MAX_IDS) return nullptr;
      lFound = mTracks.try_emplace(nRecord.mId, mSink, mpTracks, mPrefix + trackName(nRecord.mKind, nRecord.mId)).first;
    }
    mLastId = nRecord.mId;
    return mpLast = &lFound->second.getBuilder();
  }
  void finish() {
    for (auto& lEntry : mTracks) lEntry.second.getBuilder().finish();
    mSink.onTracksEnd();
  }

 private:
  TrackSink& mSink;
  const std::string mPrefix;
  size_t* const mpTracks;
  std::map<int, NamedTrack> mTracks;
  int mLastId = 0;  // most records are of the id of the one before
  EpochBuilder* mpLast = nullptr;
};

/// Reads the recordings by turns, each with tracks of its own.
class TrackReader::Sorted : public SortedSink {
 public:
  Sorted(TrackReader& nReader, TrackSink& nSink)
      : mReader(nReader), mSorter(nSink), mTracks(nReader.mRun.getRecordings().size()) {}

  void onTurn(size_t nRecording, int64_t nBase) override {
    mSorter.setRecording(nRecording, nBase);
    mNow = nRecording;
    if (!mTracks[mNow]) mTracks[mNow] = mReader.makeTracks(mReader.mRun.getRecordings()[mNow], mSorter);
  }
  bool onRecord(const tool::Record& nRecord, const TrackRecords::Place& nPlace) override {
    return mReader.use(*mTracks[mNow], nRecord, nPlace);
  }
  void onEnd() override {
    mTracks[mNow]->finish();
    mTracks[mNow].reset();
  }
  void finish() { mSorter.finish(); }

 private:
  TrackReader& mReader;
  TrackSorter mSorter;
  std::vector<std::unique_ptr<Tracks>> mTracks;  // of the recordings under way
  size_t mNow = 0;
};

TrackReader::TrackReader(Run& nRun, TrackChoice nChoice)
    : mRun(nRun),
      mChoice(nChoice),
      mHasPrefix(nRun.getRecordings().size() > 1 && nChoice != TRACKS_OF_EACH_RECORDING),
      mRecords(nRun, nChoice),
      mUse([this](const tool::Record& nRecord, const TrackRecords::Place& nPlace) {
        return use(*mTracks, nRecord, nPlace);
      }) {}

TrackReader::~TrackReader() = default;

void TrackReader::read(Problems& nProblems, TrackSink& nSink) {
  if (mRun.getOptions().mSort) {
    Sorted lSorted(*this, nSink);
    readSorted(mRun, mChoice, nProblems, lSorted);
    return lSorted.finish();
  }
  size_t lIndex = 0;
  for (const Recording& lRecording : mRun.getRecordings()) {
    nSink.onRecording(lIndex++);
    begin(lRecording, nSink);
    mRun.readAll(lRecording, nProblems, [&](const tool::Record& nRecord, Selector& nSelector, bool nIsSelected) {
      return take(nRecord, nSelector, nIsSelected);
    });
    end(lRecording);
  }
}

void TrackReader::begin(const Recording& nRecording, TrackSink& nSink) {
  mTracks = makeTracks(nRecording, nSink);
  mRecords.begin(nRecording, mUse);
}

std::unique_ptr<Tracks> TrackReader::makeTracks(const Recording& nRecording, TrackSink& nSink) {
  const std::string lName = std::filesystem::path(nRecording.mName).filename().string();
  return std::make_unique<Tracks>(nSink, mHasPrefix ? lName + ", " : "", &mTrackNum);
}

bool TrackReader::take(const tool::Record& nRecord, Selector& nSelector, bool nIsSelected) {
  return mRecords.take(nRecord, nSelector, nIsSelected);
}

void TrackReader::end(const Recording& nRecording) {
  mRecords.end(nRecording);
  mTracks->finish();
}

bool TrackReader::use(Tracks& nTracks, const tool::Record& nRecord, const TrackRecords::Place& nPlace) {
  EpochBuilder* const lpBuilder = nTracks.of(nRecord);
  if (lpBuilder == nullptr) return true;
  lpBuilder->setPlace(nRecord.mId, nPlace.mElapsedMs);
  if (nPlace.mUtcMs != NO_TIME) lpBuilder->setTime(nPlace.mUtcMs);
  if (!mSentences.read(nRecord, *lpBuilder)) ++mUndecoded;
  return true;
}

}  // namespace logtool
