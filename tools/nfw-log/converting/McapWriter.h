#pragma once

#include <map>
#include <string>
#include <vector>

#include "McapFile.h"
#include "TrackPoint.h"

namespace logtool {

/// Writes tracks as messages of JSON in a container (MCAP): positions in the schema that viewers know, so that they
/// show a map, and beside them speed, course, quality and the satellites. A point without a date stands as far behind
/// 1970 as it is behind the recording's begin.
class McapWriter : public TrackSink {
 public:
  /// @param nOutput not owned, outlives the writer @param nRecordings whose tracks come, in their order
  McapWriter(OutputFile& nOutput, const std::vector<Recording>& nRecordings);

  void onRecording(size_t nRecording) override { mRecording = nRecording; }
  void onTrack(size_t nTrack, const std::string& nName) override;
  void onSky(const Sky& nSky) override;
  bool wantsSky() const override { return true; }
  void onPoint(const TrackPoint& nPoint) override;
  void end() { mFile.end(); }

  uint64_t getPoints() const { return mPoints; }
  uint64_t getUndated() const { return mUndated; }

 private:
  struct Track {
    std::string mName;  // in UTF-8, without what separates topics
    uint16_t mFixes = 0, mMotion = 0;
  };
  void addFix(const TrackPoint& nPoint, const Track& nTrack, int64_t nMs);
  void addMotion(const TrackPoint& nPoint, const Track& nTrack, int64_t nMs);
  void add(uint16_t nChannel, int64_t nMs);

  McapFile mFile;
  const uint16_t mFixSchema, mMotionSchema, mSkySchema;
  std::vector<std::string> mSkyTopics;  // of each recording
  std::vector<uint16_t> mSkyChannels;   // of each recording; 0 before its first satellites
  size_t mRecording = 0;                // whose turn it is
  std::map<size_t, Track> mTracks;
  std::string mJson;
  uint64_t mPoints = 0, mUndated = 0;
};

}  // namespace logtool
