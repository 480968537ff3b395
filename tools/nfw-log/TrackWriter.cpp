#include "TrackWriter.h"

namespace logtool {

std::unique_ptr<TrackWriter> TrackWriter::make(const std::string& nFormat, OutputFile& nOutput) {
  if (nFormat == "gpx") return makeGpxWriter(nOutput);
  if (nFormat == "kml") return makeKmlWriter(nOutput);
  if (nFormat == "geojson") return makeGeoJsonWriter(nOutput);
  if (nFormat == "csv") return makeCsvWriter(nOutput);
  return nullptr;
}

}  // namespace logtool
