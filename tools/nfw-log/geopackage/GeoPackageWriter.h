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
  /// The recordings whose tracks come.
  void expect(const std::vector<Recording>& nRecordings);

  void onRecording(size_t nRecording) override;
  void onTrack(size_t nTrack, const std::string& nName) override;
  void onPoint(const TrackPoint& nPoint) override;
  void onTracksEnd() override;
  void onSky(const Sky& nSky) override;
  bool wantsSky() const override { return true; }
  void end();

  uint64_t getPoints() const { return mPoints; }

 private:
  struct Row {
    int64_t mId = 0;  // 0: not there yet
    int64_t mPoints = 0;
  };
  struct Track {
    int64_t mId = 0;
    size_t mRecording = 0;
    bool mIsReckoning = false;
    int64_t mPoints = 0;
    TrackPoint mFirst, mLast;
    TrackLine mLine;
  };
  void addRecording(const Recording& nRecording, Row& nRow);
  void addPoint(const TrackPoint& nPoint, const Track& nTrack);
  void endLine(Track& nTrack, bool nGoesOn);
  void endTrack(Track& nTrack);
  void tellBounds(const char* npTable, const Bounds& nBounds);

  Database& mDatabase;
  std::vector<Recording> mRecordings;
  std::vector<Row> mRows;           // of the recordings
  size_t mRecording = 0;            // whose turn it is
  std::map<size_t, Track> mTracks;  // of the recordings under way
  uint64_t mPoints = 0;
  Bounds mPointBounds, mReportBounds;
  std::string mShape;

  const bool mIsMade;  // the tables, before the statements
  Statement mAddRecording, mEndRecording, mAddTrack, mEndTrack, mAddLine, mAddPoint, mAddReport, mAddSatellite;
};

}  // namespace logtool
