#pragma once

#include <map>
#include <string>
#include <vector>

#include "Database.h"
#include "Inputs.h"
#include "TrackLine.h"

namespace logtool {

/// Writes the tracks of recordings into a GeoPackage: a row for each recording, track, stretch without a break and
/// point. Reports of dead reckoning are points of a table of their own. docs/fleet.md shows the tables.
class GeoPackageWriter : public TrackSink {
 public:
  /// @param nDatabase open; not owned, outlives the writer. Gets the tables where it has none.
  explicit GeoPackageWriter(Database& nDatabase);

  /// Whether the package has this recording, told by its path and size; one of the same path that has grown since, or
  /// was replaced, is taken out.
  bool has(const Recording& nRecording);
  /// The tracks that come are of this recording, until onTracksEnd(), and of the next then.
  void expect(const std::vector<Recording>& nRecordings);

  void onTrack(size_t nTrack, const std::string& nName) override;
  void onPoint(const TrackPoint& nPoint) override;
  void onTracksEnd() override;
  void onSky(const Sky& nSky) override;
  bool wantsSky() const override { return true; }
  void end();

  uint64_t getPoints() const { return mPoints; }

 private:
  struct Track {
    int64_t mId = 0;
    bool mIsReckoning = false;
    int64_t mPoints = 0;
    TrackPoint mFirst, mLast;
    TrackLine mLine;
  };
  void beginRecording();
  void addPoint(const TrackPoint& nPoint, const Track& nTrack);
  void endLine(Track& nTrack, bool nGoesOn);
  void endTrack(Track& nTrack);
  void tellBounds(const char* npTable, const Bounds& nBounds);

  Database& mDatabase;
  std::vector<Recording> mRecordings;
  size_t mNext = 0;  // of the recordings
  int64_t mRecordingId = 0;
  int64_t mRecordingPoints = 0;
  std::map<size_t, Track> mTracks;  // of the recording under way
  uint64_t mPoints = 0;
  Bounds mPointBounds, mReportBounds;
  std::string mShape;

  const bool mIsMade;  // the tables, before the statements
  Statement mAddRecording, mEndRecording, mAddTrack, mEndTrack, mAddLine, mAddPoint, mAddReport, mAddSatellite;
};

}  // namespace logtool
