#include "JsonObject.h"
#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

/// GeoJSON (RFC 7946): a collection with a point for each epoch.
class GeoJsonPart : public TrackPart {
 public:
  GeoJsonPart(TrackText& nText, const std::string& nName, bool nIsFirst)
      : TrackPart(nText), mName(nName), mHasPoints(!nIsFirst) {}

  void add(const TrackPoint& nPoint) override {
    mLine = mHasPoints ? ",\n" : "\n";
    mHasPoints = true;
    {
      tool::JsonObject lFeature(&mLine);
      lFeature.text("type", "Feature");
      addGeometry(nPoint, lFeature);
      addProperties(nPoint, lFeature);
    }
    mText.write(mLine);
  }

 private:
  static void addGeometry(const TrackPoint& nPoint, tool::JsonObject& nFeature) {
    tool::JsonObject lGeometry(nFeature.key("geometry"));
    lGeometry.text("type", "Point");
    std::string* const lpText = lGeometry.key("coordinates");
    lpText->push_back('[');
    appendPlace(nPoint, ',', lpText);
    lpText->push_back(']');
  }

  void addProperties(const TrackPoint& nPoint, tool::JsonObject& nFeature) const {
    tool::JsonObject lProperties(nFeature.key("properties"));
    lProperties.text("track", mName);
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

  const std::string mName;
  bool mHasPoints;  // the document
  std::string mLine;
};

}  // namespace

const TrackFormat GEOJSON_FORMAT = {
    "geojson", [](const Document&) -> std::string { return "{\"type\":\"FeatureCollection\",\"features\":["; }, "]}\n",
    true,
    [](TrackText& nText, const std::string& nName, bool nIsFirst) -> std::unique_ptr<TrackPart> {
      return std::make_unique<GeoJsonPart>(nText, nName, nIsFirst);
    }};

}  // namespace logtool
