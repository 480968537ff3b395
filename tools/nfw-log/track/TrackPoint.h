#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "Sky.h"

namespace logtool {

enum Fix { FIX_NONE, FIX_2D, FIX_3D, FIX_DIFFERENTIAL, FIX_ESTIMATED };

/// "none", "2d", "3d", "dgps", "estimated".
inline const char* fixName(Fix nFix) {
  static const char* const NAMES[] = {"none", "2d", "3d", "dgps", "estimated"};
  return NAMES[nFix];
}

/// What one epoch of a recording told. A number that it did not tell is NAN, a time -1.
struct TrackPoint {
  int64_t mUtcMs = -1;      ///< since 1970; -1 while no sentence has told the date
  int64_t mTimeOfDay = -1;  ///< UTC, milliseconds
  uint64_t mElapsedMs = 0;  ///< from the recording's first record
  int mId = 0;              ///< log type id of its records
  size_t mTrack = 0;        ///< as TrackSink was told of it
  bool mIsBreak = false;    ///< the track does not go on here: first of its recording, or behind a pause
  double mLatitude = NAN, mLongitude = NAN;  ///< degrees, positive in the north and east
  double mAltitude = NAN;                    ///< metres above mean sea level
  double mGeoidSeparation = NAN;             ///< metres
  double mSpeedKmh = NAN;
  double mCourse = NAN;  ///< degrees
  Fix mFix = FIX_NONE;
  double mSatellites = NAN;  ///< used
  double mHdop = NAN, mVdop = NAN, mPdop = NAN;

  bool hasPosition() const { return !std::isnan(mLatitude) && !std::isnan(mLongitude); }
  bool isDeadReckoned() const { return mFix == FIX_ESTIMATED; }
};

/// Takes the points of tracks, of each in their order. Tracks of one recording come mixed, one recording after the
/// other, or by turns.
class TrackSink {
 public:
  virtual ~TrackSink() = default;
  /// What follows is of this one of the recordings.
  virtual void onRecording(size_t /*nRecording*/) {}
  /// A track begins. @param nTrack counts them from 0 on @param nName for people; any bytes
  virtual void onTrack(size_t /*nTrack*/, const std::string& /*nName*/) {}
  /// No more points of the recording's tracks.
  virtual void onTracksEnd() {}
  virtual void onPoint(const TrackPoint& nPoint) = 0;
  /// Epochs that told no position, of a track with one at least.
  virtual void onEpochsWithoutFix(size_t /*nTrack*/, uint64_t /*nEpochs*/) {}
  /// What an epoch with a time told of satellites, with or without a position. Only for a sink that wants them.
  virtual void onSky(const Sky& /*nSky*/) {}
  virtual bool wantsSky() const { return false; }
};

}  // namespace logtool
