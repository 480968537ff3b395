#include "GeoPackageWriter.h"

#include <filesystem>

#include "PrintableText.h"
#include "WallClock.h"

namespace logtool {

namespace {

// What the standard (OGC 12-128r18, version 1.3) asks of every package.
const char* const PACKAGE = R"(
CREATE TABLE IF NOT EXISTS gpkg_spatial_ref_sys (srs_name TEXT NOT NULL, srs_id INTEGER NOT NULL PRIMARY KEY,
  organization TEXT NOT NULL, organization_coordsys_id INTEGER NOT NULL, definition TEXT NOT NULL, description TEXT);
INSERT OR IGNORE INTO gpkg_spatial_ref_sys VALUES
  ('Undefined cartesian SRS', -1, 'NONE', -1, 'undefined', NULL),
  ('Undefined geographic SRS', 0, 'NONE', 0, 'undefined', NULL),
  ('WGS 84 geodetic', 4326, 'EPSG', 4326, 'GEOGCS["WGS 84",DATUM["WGS_1984",SPHEROID["WGS 84",6378137,298.257223563,'
    || 'AUTHORITY["EPSG","7030"]],AUTHORITY["EPSG","6326"]],PRIMEM["Greenwich",0,AUTHORITY["EPSG","8901"]],'
    || 'UNIT["degree",0.0174532925199433,AUTHORITY["EPSG","9122"]],AXIS["Latitude",NORTH],AXIS["Longitude",EAST],'
    || 'AUTHORITY["EPSG","4326"]]', 'longitude and latitude in degrees');
CREATE TABLE IF NOT EXISTS gpkg_contents (table_name TEXT NOT NULL PRIMARY KEY, data_type TEXT NOT NULL,
  identifier TEXT UNIQUE, description TEXT DEFAULT '',
  last_change DATETIME NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ','now')),
  min_x DOUBLE, min_y DOUBLE, max_x DOUBLE, max_y DOUBLE, srs_id INTEGER REFERENCES gpkg_spatial_ref_sys(srs_id));
CREATE TABLE IF NOT EXISTS gpkg_geometry_columns (table_name TEXT NOT NULL UNIQUE REFERENCES gpkg_contents(table_name),
  column_name TEXT NOT NULL, geometry_type_name TEXT NOT NULL, srs_id INTEGER NOT NULL
  REFERENCES gpkg_spatial_ref_sys(srs_id), z TINYINT NOT NULL, m TINYINT NOT NULL, PRIMARY KEY (table_name, column_name));
)";

#define POINT_COLUMNS                                                                                             \
  "id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom POINT NOT NULL, track_id INTEGER NOT NULL, time DATETIME," \
  "elapsed_s DOUBLE NOT NULL, altitude_m DOUBLE, geoid_separation_m DOUBLE, speed_kmh DOUBLE, course_deg DOUBLE," \
  "fix TEXT NOT NULL, satellites INTEGER, hdop DOUBLE, vdop DOUBLE, pdop DOUBLE, dead_reckoned BOOLEAN NOT NULL"

const char* const TABLES =
    "CREATE TABLE IF NOT EXISTS recordings (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, name TEXT NOT NULL,"
    "path TEXT NOT NULL, bytes INTEGER NOT NULL, points INTEGER NOT NULL);"
    "CREATE TABLE IF NOT EXISTS tracks (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, recording_id INTEGER NOT NULL "
    "REFERENCES recordings(id), name TEXT NOT NULL, log_type_id INTEGER, begin_time DATETIME, end_time DATETIME,"
    "points INTEGER);"
    "CREATE TABLE IF NOT EXISTS track_lines (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL, geom LINESTRING NOT NULL,"
    "track_id INTEGER NOT NULL REFERENCES tracks(id), begin_time DATETIME, end_time DATETIME, points INTEGER NOT NULL);"
    "CREATE TABLE IF NOT EXISTS track_points (" POINT_COLUMNS
    ");"
    "CREATE TABLE IF NOT EXISTS reports (" POINT_COLUMNS
    ");"
    "CREATE TABLE IF NOT EXISTS satellites (id INTEGER PRIMARY KEY AUTOINCREMENT NOT NULL,"
    "recording_id INTEGER NOT NULL REFERENCES recordings(id), time DATETIME, elapsed_s DOUBLE NOT NULL,"
    "constellation TEXT NOT NULL, number INTEGER NOT NULL, elevation_deg DOUBLE, azimuth_deg DOUBLE, snr_dbhz DOUBLE);"
    "CREATE INDEX IF NOT EXISTS track_points_time ON track_points(time);"
    "INSERT OR IGNORE INTO gpkg_contents (table_name, data_type, identifier, description, srs_id) VALUES"
    "('recordings','attributes','recordings','what was converted',NULL),"
    "('tracks','attributes','tracks','the tracks of each recording',NULL),"
    "('satellites','attributes','satellites','satellites in view at each moment',NULL),"
    "('track_lines','features','track_lines','stretches of tracks without a break',4326),"
    "('track_points','features','track_points','positions',4326),"
    "('reports','features','reports','reports of dead reckoning',4326);"
    "INSERT OR IGNORE INTO gpkg_geometry_columns VALUES ('track_lines','geom','LINESTRING',4326,0,0),"
    "('track_points','geom','POINT',4326,0,0),('reports','geom','POINT',4326,0,0);";
#undef POINT_COLUMNS

#define POINT_VALUES                                                                                                 \
  " (geom, track_id, time, elapsed_s, altitude_m, geoid_separation_m, speed_kmh, course_deg, fix, satellites, hdop," \
  " vdop, pdop, dead_reckoned) VALUES (?,?,?,?,?,?,?,?,?,?,?,?,?,?)"
const char* const ADD_POINT = "INSERT INTO track_points" POINT_VALUES;
const char* const ADD_REPORT = "INSERT INTO reports" POINT_VALUES;
#undef POINT_VALUES

bool makeTables(Database& nDatabase) {
  nDatabase.run("PRAGMA application_id=0x47504B47; PRAGMA user_version=10300;");
  nDatabase.run(PACKAGE);
  nDatabase.run(TABLES);
  return nDatabase.isRight();
}

std::string timeOrNothing(int64_t nUtcMs) { return nUtcMs < 0 ? "" : utcText(nUtcMs); }

/// One recording has one path, from wherever it is named.
std::string pathOf(const Recording& nRecording) {
  std::error_code lError;
  const std::filesystem::path lPath = std::filesystem::weakly_canonical(nRecording.mName, lError);
  return tool::printableText(lError || nRecording.mName == "-" ? nRecording.mName : lPath.string());
}

}  // namespace

GeoPackageWriter::GeoPackageWriter(Database& nDatabase)
    : mDatabase(nDatabase),
      mIsMade(makeTables(nDatabase)),
      mAddRecording(nDatabase, "INSERT INTO recordings (name, path, bytes, points) VALUES (?,?,?,0)"),
      mEndRecording(nDatabase, "UPDATE recordings SET points=? WHERE id=?"),
      mAddTrack(nDatabase, "INSERT INTO tracks (recording_id, name) VALUES (?,?)"),
      mEndTrack(nDatabase, "UPDATE tracks SET log_type_id=?, begin_time=?, end_time=?, points=? WHERE id=?"),
      mAddLine(nDatabase, "INSERT INTO track_lines (geom, track_id, begin_time, end_time, points) VALUES (?,?,?,?,?)"),
      mAddPoint(nDatabase, ADD_POINT),
      mAddReport(nDatabase, ADD_REPORT),
      mAddSatellite(nDatabase,
                    "INSERT INTO satellites (recording_id, time, elapsed_s, constellation, number, elevation_deg,"
                    " azimuth_deg, snr_dbhz) VALUES (?,?,?,?,?,?,?,?)") {}

bool GeoPackageWriter::has(const Recording& nRecording) {
  if (nRecording.mName == "-") return false;
  Statement lFind(mDatabase, "SELECT id, bytes FROM recordings WHERE path=?");
  if (!lFind.text(pathOf(nRecording)).run()) return false;
  if (lFind.result(1) == static_cast<int64_t>(totalSize({nRecording}))) return true;
  const int64_t lId = lFind.result(0);
  for (const char* const lpCommand :
       {"DELETE FROM track_points WHERE track_id IN (SELECT id FROM tracks WHERE recording_id=?)",
        "DELETE FROM reports WHERE track_id IN (SELECT id FROM tracks WHERE recording_id=?)",
        "DELETE FROM track_lines WHERE track_id IN (SELECT id FROM tracks WHERE recording_id=?)",
        "DELETE FROM satellites WHERE recording_id=?", "DELETE FROM tracks WHERE recording_id=?",
        "DELETE FROM recordings WHERE id=?"}) {
    Statement(mDatabase, lpCommand).number(lId).run();
  }
  return false;
}

void GeoPackageWriter::expect(const std::vector<Recording>& nRecordings) {
  mRecordings = nRecordings;
  mRows.resize(nRecordings.size());
}

void GeoPackageWriter::onRecording(size_t nRecording) {
  mRecording = nRecording;
  if (mRows[nRecording].mId == 0) addRecording(mRecordings[nRecording], mRows[nRecording]);
}

void GeoPackageWriter::addRecording(const Recording& nRecording, Row& nRow) {
  const std::string lName = std::filesystem::path(nRecording.mName).filename().string();
  mAddRecording.text(tool::printableText(lName)).text(pathOf(nRecording));
  mAddRecording.number(static_cast<int64_t>(totalSize({nRecording}))).run();
  nRow.mId = mDatabase.lastId();
}

void GeoPackageWriter::onTrack(size_t nTrack, const std::string& nName) {
  const size_t lComma = nName.rfind(", ");  // the recording's name stands before it
  const std::string lName = lComma == std::string::npos ? nName : nName.substr(lComma + 2);
  mAddTrack.number(mRows[mRecording].mId).text(lName).run();
  Track& lTrack = mTracks[nTrack];
  lTrack.mId = mDatabase.lastId();
  lTrack.mRecording = mRecording;
  lTrack.mIsReckoning = lName == "dead reckoning";
}

void GeoPackageWriter::onPoint(const TrackPoint& nPoint) {
  Track& lTrack = mTracks[nPoint.mTrack];
  if (lTrack.mPoints++ == 0) lTrack.mFirst = nPoint;
  lTrack.mLast = nPoint;
  ++mPoints;
  ++mRows[lTrack.mRecording].mPoints;
  (lTrack.mIsReckoning ? mReportBounds : mPointBounds).add(nPoint.mLongitude, nPoint.mLatitude);
  addPoint(nPoint, lTrack);
  if (nPoint.mIsBreak) endLine(lTrack, false);
  if (lTrack.mLine.getCount() == TrackLine::MAX_POINTS) endLine(lTrack, true);
  lTrack.mLine.add(nPoint);
}

void GeoPackageWriter::addPoint(const TrackPoint& nPoint, const Track& nTrack) {
  mShape.clear();
  appendPoint(nPoint, &mShape);
  Statement& lAdd = nTrack.mIsReckoning ? mAddReport : mAddPoint;
  lAdd.blob(mShape).number(nTrack.mId).text(timeOrNothing(nPoint.mUtcMs));
  lAdd.real(static_cast<double>(nPoint.mElapsedMs) / 1000.0).real(nPoint.mAltitude).real(nPoint.mGeoidSeparation);
  lAdd.real(nPoint.mSpeedKmh).real(nPoint.mCourse).text(fixName(nPoint.mFix)).real(nPoint.mSatellites);
  lAdd.real(nPoint.mHdop).real(nPoint.mVdop).real(nPoint.mPdop).number(nPoint.isDeadReckoned() ? 1 : 0).run();
}

// One position alone is no line.
void GeoPackageWriter::endLine(Track& nTrack, bool nGoesOn) {
  TrackLine& lLine = nTrack.mLine;
  if (lLine.getCount() > 1) {
    mAddLine.blob(lLine.shape()).number(nTrack.mId);
    mAddLine.text(timeOrNothing(lLine.getFirst().mUtcMs))
        .text(timeOrNothing(lLine.getLast().mUtcMs))
        .number(lLine.getCount())
        .run();
  }
  lLine.restart(nGoesOn);
}

void GeoPackageWriter::endTrack(Track& nTrack) {
  endLine(nTrack, false);
  mEndTrack.number(nTrack.mFirst.mId)
      .text(timeOrNothing(nTrack.mFirst.mUtcMs))
      .text(timeOrNothing(nTrack.mLast.mUtcMs));
  mEndTrack.number(nTrack.mPoints).number(nTrack.mId).run();
}

void GeoPackageWriter::onTracksEnd() {
  for (auto i = mTracks.begin(); i != mTracks.end();) {
    const bool lIsOver = i->second.mRecording == mRecording;
    if (lIsOver) endTrack(i->second);
    i = lIsOver ? mTracks.erase(i) : std::next(i);
  }
  mEndRecording.number(mRows[mRecording].mPoints).number(mRows[mRecording].mId).run();
}

void GeoPackageWriter::onSky(const Sky& nSky) {
  const std::string lTime = timeOrNothing(nSky.mUtcMs);
  for (const SatelliteView& lView : nSky.mSatellites) {
    mAddSatellite.number(mRows[mRecording].mId).text(lTime).real(static_cast<double>(nSky.mElapsedMs) / 1000.0);
    mAddSatellite.text(constellationName(lView.mName.mConstellation)).number(lView.mName.mNumber);
    mAddSatellite.real(lView.mElevation).real(lView.mAzimuth).real(lView.mSnr).run();
  }
}

void GeoPackageWriter::end() {
  tellBounds("track_points", mPointBounds);
  tellBounds("reports", mReportBounds);
  tellBounds("track_lines", mPointBounds);
  tellBounds("track_lines", mReportBounds);
}

void GeoPackageWriter::tellBounds(const char* npTable, const Bounds& nBounds) {
  if (nBounds.mWest > nBounds.mEast) return;  // of nothing
  Statement lTell(mDatabase,
                  "UPDATE gpkg_contents SET last_change=strftime('%Y-%m-%dT%H:%M:%fZ','now'),"
                  "min_x=min(coalesce(min_x,?1),?1), min_y=min(coalesce(min_y,?2),?2),"
                  "max_x=max(coalesce(max_x,?3),?3), max_y=max(coalesce(max_y,?4),?4) WHERE table_name=?5");
  lTell.real(nBounds.mWest).real(nBounds.mSouth).real(nBounds.mEast).real(nBounds.mNorth).text(npTable).run();
}

}  // namespace logtool
