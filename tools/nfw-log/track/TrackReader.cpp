#include "TrackReader.h"

#include <filesystem>
#include <map>

#include "EpochBuilder.h"
#include "TrackRecords.h"

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
    if (!mIsTold) mSink.onTrack(mNumber = (*mpTracks)++, mName);
    mIsTold = true;
    TrackPoint lPoint = nPoint;
    lPoint.mTrack = mNumber;
    mSink.onPoint(lPoint);
  }

 private:
  TrackSink& mSink;
  size_t* const mpTracks;
  const std::string mName;
  EpochBuilder mBuilder;
  bool mIsTold = false;
  size_t mNumber = 0;
};

/// The tracks of a recording, by their ids.
class Tracks {
 public:
  /// @param nPrefix of their names @param npTracks how many there were, of all recordings
  Tracks(TrackSink& nSink, const std::string& nPrefix, size_t* npTracks)
      : mSink(nSink), mPrefix(nPrefix), mpTracks(npTracks) {}

  EpochBuilder* of(const tool::Record& nRecord) {
    auto lFound = mTracks.find(nRecord.mId);
    if (lFound == mTracks.end()) {
      if (mTracks.size() >= MAX_IDS) return nullptr;
      lFound = mTracks.try_emplace(nRecord.mId, mSink, mpTracks, mPrefix + trackName(nRecord.mKind, nRecord.mId)).first;
    }
    return &lFound->second.getBuilder();
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
};

}  // namespace

void TrackReader::read(Problems& nProblems, TrackSink& nSink) {
  TrackRecords lRecords(mRun);
  const bool lIsOne = mRun.getRecordings().size() == 1;
  size_t lTrackNum = 0;
  for (const Recording& lRecording : mRun.getRecordings()) {
    const std::string lName = std::filesystem::path(lRecording.mName).filename().string();
    Tracks lTracks(nSink, lIsOne ? "" : lName + ", ", &lTrackNum);
    lRecords.read(lRecording, nProblems, [&](const tool::Record& nRecord, const TrackRecords::Place& nPlace) {
      EpochBuilder* const lpBuilder = lTracks.of(nRecord);
      if (lpBuilder == nullptr) return true;
      lpBuilder->setPlace(nRecord.mId, nPlace.mElapsedMs);
      if (nPlace.mUtcMs != NO_TIME) lpBuilder->setTime(nPlace.mUtcMs);
      if (!mSentences.read(nRecord, *lpBuilder)) ++mUndecoded;
      return true;
    });
    lTracks.finish();
  }
}

}  // namespace logtool
