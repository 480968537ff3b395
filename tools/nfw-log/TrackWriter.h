#pragma once

#include <memory>

#include "OutputFile.h"
#include "TrackPoint.h"

namespace logtool {

/// Writes a track in a format of its own, point by point.
class TrackWriter : public TrackSink {
 public:
  /// @param nOutput not owned, outlives the writer
  explicit TrackWriter(OutputFile& nOutput) : mOutput(nOutput) {}
  virtual void begin() = 0;
  virtual void end() = 0;
  uint64_t getPoints() const { return mPoints; }

  /// @param nFormat "gpx", "kml", "geojson" or "csv"; null for any other
  static std::unique_ptr<TrackWriter> make(const std::string& nFormat, OutputFile& nOutput);

 protected:
  OutputFile& mOutput;
  uint64_t mPoints = 0;
};

/// Each writer is in a file of its own.
std::unique_ptr<TrackWriter> makeGpxWriter(OutputFile& nOutput);
std::unique_ptr<TrackWriter> makeKmlWriter(OutputFile& nOutput);
std::unique_ptr<TrackWriter> makeGeoJsonWriter(OutputFile& nOutput);
std::unique_ptr<TrackWriter> makeCsvWriter(OutputFile& nOutput);

}  // namespace logtool
