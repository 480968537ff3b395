#include "TrackReader.h"

#include <set>

#include "Messages.h"

namespace logtool {

namespace {

const size_t MAX_IDS = 64;  // with positions; more are not worth their memory

/// Lets through the points of the first id.
class FirstId : public TrackSink {
 public:
  explicit FirstId(TrackSink& nSink) : mSink(nSink) {}
  void onPoint(const TrackPoint& nPoint) override {
    if (mId < 0) mId = nPoint.mId;
    if (nPoint.mId == mId) mSink.onPoint(nPoint);
    if (nPoint.mId != mId && mOthers.size() < MAX_IDS) mOthers.insert(nPoint.mId);
  }
  void tellOthers(const std::string& nRecording) const {
    for (const int lId : mOthers) {
      tell("{}: the track is of id {}; id {} has positions too: --id {} takes them", nRecording, mId, lId, lId);
    }
  }

 private:
  TrackSink& mSink;
  int mId = -1;
  std::set<int> mOthers;
};

/// The points of a recording, each id by itself.
class Builders {
 public:
  explicit Builders(TrackSink& nSink) : mSink(nSink) {}
  EpochBuilder* of(int nId) {
    const auto lFound = mBuilders.find(nId);
    if (lFound != mBuilders.end()) return lFound->second.get();
    if (mBuilders.size() >= MAX_IDS) return nullptr;
    return (mBuilders[nId] = std::make_unique<EpochBuilder>(mSink)).get();
  }
  void finish() {
    for (const auto& lEntry : mBuilders) lEntry.second->finish();
  }

 private:
  TrackSink& mSink;
  std::map<int, std::unique_ptr<EpochBuilder>> mBuilders;
};

}  // namespace

void TrackReader::read(Problems& nProblems, TrackSink& nSink) {
  for (const Recording& lRecording : mRun.getRecordings()) {
    FirstId lFirst(nSink);
    Builders lBuilders(lFirst);
    mRun.readSelected(lRecording, nProblems, [&](const tool::Record& nRecord, const Selector& nSelector) {
      if (nRecord.mKind == tool::LOG_RECORD && (nRecord.mData.empty() || nRecord.mData[0] != '$')) return true;
      EpochBuilder* const lpBuilder = lBuilders.of(nRecord.mId);
      if (lpBuilder == nullptr) return true;
      lpBuilder->setPlace(nRecord.mId, nSelector.getTimeline().getElapsedMs());
      if (!mSentences.read(nRecord, *lpBuilder)) ++mUndecoded;
      return true;
    });
    lBuilders.finish();
    lFirst.tellOthers(lRecording.mName);
  }
}

}  // namespace logtool
