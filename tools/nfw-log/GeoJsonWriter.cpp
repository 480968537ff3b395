#include <fmt/format.h>

#include "JsonObject.h"
#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

/// GeoJSON (RFC 7946): a collection with a point for each epoch.
class GeoJsonWriter : public TrackWriter {
 public:
  using TrackWriter::TrackWriter;

  void begin() override { mOutput.write("{\"type\":\"FeatureCollection\",\"features\":["); }

  void onPoint(const TrackPoint& nPoint) override {
    mText = mPoints++ > 0 ? ",\n" : "\n";
    {
      tool::JsonObject lFeature(&mText);
      lFeature.text("type", "Feature");
      addGeometry(nPoint, lFeature);
      addProperties(nPoint, lFeature);
    }
    mOutput.write(mText);
  }

  void end() override { mOutput.write("]}\n"); }

 private:
  static void addGeometry(const TrackPoint& nPoint, tool::JsonObject& nFeature) {
    tool::JsonObject lGeometry(nFeature.key("geometry"));
    lGeometry.text("type", "Point");
    std::string* const lpText = lGeometry.key("coordinates");
    fmt::format_to(std::back_inserter(*lpText), "[{:.7f},{:.7f}", nPoint.mLongitude, nPoint.mLatitude);
    if (!std::isnan(nPoint.mAltitude)) fmt::format_to(std::back_inserter(*lpText), ",{:.1f}", nPoint.mAltitude);
    lpText->push_back(']');
  }

  static void addProperties(const TrackPoint& nPoint, tool::JsonObject& nFeature) {
    tool::JsonObject lProperties(nFeature.key("properties"));
    if (nPoint.mUtcMs >= 0) lProperties.text("time", utcText(nPoint.mUtcMs));
    if (nPoint.mUtcMs < 0) lProperties.null("time");
    lProperties.real("elapsed_s", static_cast<double>(nPoint.mElapsedMs) / 1000.0);
    lProperties.number("id", static_cast<uint64_t>(nPoint.mId));
    lProperties.real("speed_kmh", std::round(nPoint.mSpeedKmh * 1000.0) / 1000.0);
    lProperties.real("course_deg", nPoint.mCourse);
    lProperties.text("fix", fixName(nPoint.mFix));
    lProperties.real("satellites", nPoint.mSatellites);
    lProperties.real("hdop", nPoint.mHdop);
    lProperties.real("vdop", nPoint.mVdop);
    lProperties.real("pdop", nPoint.mPdop);
    lProperties.flag("dead_reckoned", nPoint.isDeadReckoned());
  }

  std::string mText;
};

}  // namespace

std::unique_ptr<TrackWriter> makeGeoJsonWriter(OutputFile& nOutput) { return std::make_unique<GeoJsonWriter>(nOutput); }

}  // namespace logtool
