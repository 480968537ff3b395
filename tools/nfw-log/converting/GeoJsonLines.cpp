#include "JsonObject.h"
#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

const size_t MAX_POINTS = 10000;  // of a line, which is held

/// GeoJSON (RFC 7946): a line for each stretch without a break, and so that it can be held, of so many points at most;
/// the next begins where it ends. The times of its points stand in the list that other programs look for.
class GeoJsonLinesPart : public TrackPart {
 public:
  GeoJsonLinesPart(TrackText& nText, const std::string& nName, bool nIsFirst)
      : TrackPart(nText), mName(nName), mHasFeatures(!nIsFirst) {}

  void add(const TrackPoint& nPoint) override {
    if (nPoint.mIsBreak && mHeld > 0) endLine();
    if (mHeld == MAX_POINTS) {
      endLine();
      hold(mLast);
    }
    hold(nPoint);
    mLast = nPoint;
  }
  void end() override { endLine(); }

 private:
  void hold(const TrackPoint& nPoint) {
    if (mHeld++ > 0) {
      mPlaces += ',';
      mTimes += ',';
    } else {
      mBeginMs = nPoint.mUtcMs;
    }
    mPlaces += '[';
    appendPlace(nPoint, ',', &mPlaces);
    mPlaces += ']';
    mTimes += quotedTime(nPoint.mUtcMs);
  }

  static std::string quotedTime(int64_t nUtcMs) { return nUtcMs < 0 ? "null" : "\"" + utcText(nUtcMs) + "\""; }

  void endLine() {
    if (mHeld == 0) return;
    std::string lLine = mHasFeatures ? ",\n" : "\n";
    mHasFeatures = true;
    appendFeature(&lLine);
    mText.write(lLine);
    mPlaces.clear();
    mTimes.clear();
    mHeld = 0;
  }

  // One position alone is no line.
  void appendFeature(std::string* npLine) const {
    tool::JsonObject lFeature(npLine);
    lFeature.text("type", "Feature");
    {
      tool::JsonObject lGeometry(lFeature.key("geometry"));
      lGeometry.text("type", mHeld > 1 ? "LineString" : "Point");
      *lGeometry.key("coordinates") += mHeld > 1 ? "[" + mPlaces + "]" : mPlaces;
    }
    tool::JsonObject lProperties(lFeature.key("properties"));
    lProperties.text("track", mName);
    *lProperties.key("begin") += quotedTime(mBeginMs);
    *lProperties.key("end") += quotedTime(mLast.mUtcMs);
    lProperties.number("points", mHeld);
    tool::JsonObject lOfPoints(lProperties.key("coordinateProperties"));
    *lOfPoints.key("times") += "[" + mTimes + "]";
  }

  const std::string mName;
  bool mHasFeatures;  // the document
  size_t mHeld = 0;
  int64_t mBeginMs = -1;
  std::string mPlaces, mTimes;  // of the points held
  TrackPoint mLast;
};

}  // namespace

const TrackFormat GEOJSON_LINES_FORMAT = {
    "geojson", GEOJSON_FORMAT.mpBegin, GEOJSON_FORMAT.mpEnd, false,
    [](TrackText& nText, const std::string& nName, bool nIsFirst) -> std::unique_ptr<TrackPart> {
      return std::make_unique<GeoJsonLinesPart>(nText, nName, nIsFirst);
    }};

}  // namespace logtool
