#include <fmt/format.h>

#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

const size_t MAX_POINTS = 1000;  // of a piece, which is held: its times stand before its positions

/// KML 2.2 with its extension for tracks. A stretch without a break is a placemark; its pieces join.
class KmlWriter : public TrackWriter {
 public:
  using TrackWriter::TrackWriter;

  void begin() override {
    mOutput.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<kml xmlns=\"http://www.opengis.net/kml/2.2\" xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
        "<Document>\n<name>Track</name>\n"
        "<Style id=\"track\"><LineStyle><color>ffd06010</color><width>4</width></LineStyle></Style>\n");
  }

  void onPoint(const TrackPoint& nPoint) override {
    if (nPoint.mIsBreak || mPoints == 0) {
      endPlacemark();
      beginPlacemark();
    } else if (mHeld == MAX_POINTS) {
      const std::string lWhen = mLastWhen, lPosition = mLastPosition;
      endPiece();
      hold(lWhen, lPosition);
    }
    ++mPoints;
    const double lAltitude = std::isnan(nPoint.mAltitude) ? 0.0 : nPoint.mAltitude;
    hold(nPoint.mUtcMs >= 0 ? utcText(nPoint.mUtcMs) : "",
         fmt::format("{:.7f} {:.7f} {:.1f}", nPoint.mLongitude, nPoint.mLatitude, lAltitude));
  }

  void end() override {
    endPlacemark();
    mOutput.write("</Document>\n</kml>\n");
  }

 private:
  void beginPlacemark() {
    mIsInside = true;
    mOutput.write(
        "<Placemark>\n<styleUrl>#track</styleUrl>\n<gx:MultiTrack>\n<altitudeMode>clampToGround</altitudeMode>\n"
        "<gx:interpolate>1</gx:interpolate>\n");
  }

  void endPlacemark() {
    if (!mIsInside) return;
    endPiece();
    mOutput.write("</gx:MultiTrack>\n</Placemark>\n");
    mIsInside = false;
  }

  void hold(const std::string& nWhen, const std::string& nPosition) {
    mLastWhen = nWhen;
    mLastPosition = nPosition;
    mWhens += "<when>" + nWhen + "</when>\n";
    mPositions += "<gx:coord>" + nPosition + "</gx:coord>\n";
    ++mHeld;
  }

  void endPiece() {
    mOutput.write("<gx:Track>\n" + mWhens + mPositions + "</gx:Track>\n");
    mWhens.clear();
    mPositions.clear();
    mHeld = 0;
  }

  bool mIsInside = false;
  size_t mHeld = 0;
  std::string mWhens, mPositions;  // of the points held
  std::string mLastWhen, mLastPosition;
};

}  // namespace

std::unique_ptr<TrackWriter> makeKmlWriter(OutputFile& nOutput) { return std::make_unique<KmlWriter>(nOutput); }

}  // namespace logtool
