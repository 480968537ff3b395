#include <fmt/format.h>

#include "TrackWriter.h"
#include "WallClock.h"
#include "XmlText.h"

namespace logtool {

namespace {

const size_t MAX_POINTS = 1000;  // of a piece, which is held: its times stand before its positions

/// KML 2.2 with its extension for tracks, which need times. A stretch without a break is a placemark; its pieces join.
/// What has no time is a line beside them.
class KmlPart : public TrackPart {
 public:
  KmlPart(TrackText& nText, const std::string& nName) : TrackPart(nText) {
    mText.write("<Folder>\n<name>" + xmlText(nName) + "</name>\n");
  }

  void add(const TrackPoint& nPoint) override {
    const bool lIsTimed = nPoint.mUtcMs >= 0;
    if (nPoint.mIsBreak || !mIsInside || lIsTimed != mIsTimed) {
      endPlacemark();
      beginPlacemark(lIsTimed);
    } else if (mHeld == MAX_POINTS) {
      const TrackPoint lLast = mLast;
      endPiece();
      hold(lLast);
    }
    hold(nPoint);
  }

  void end() override {
    endPlacemark();
    mText.write("</Folder>\n");
  }

 private:
  void beginPlacemark(bool nIsTimed) {
    mIsInside = true;
    mIsTimed = nIsTimed;
    mText.write(nIsTimed ? "<Placemark>\n<styleUrl>#track</styleUrl>\n<gx:MultiTrack>\n"
                           "<altitudeMode>clampToGround</altitudeMode>\n<gx:interpolate>1</gx:interpolate>\n"
                         : "<Placemark>\n<styleUrl>#track</styleUrl>\n<MultiGeometry>\n");
  }

  void endPlacemark() {
    if (!mIsInside) return;
    endPiece();
    mText.write(mIsTimed ? "</gx:MultiTrack>\n</Placemark>\n" : "</MultiGeometry>\n</Placemark>\n");
    mIsInside = false;
  }

  // What is not told of the altitude is left out: on the ground it says nothing.
  void hold(const TrackPoint& nPoint) {
    const char lBetween = mIsTimed ? ' ' : ',';
    std::string lPlace = fmt::format("{:.7f}{}{:.7f}", nPoint.mLongitude, lBetween, nPoint.mLatitude);
    if (!std::isnan(nPoint.mAltitude)) lPlace += lBetween + decimalText(nPoint.mAltitude, 3);
    if (mIsTimed) mWhens += "<when>" + utcText(nPoint.mUtcMs) + "</when>\n";
    mPositions += mIsTimed ? "<gx:coord>" + lPlace + "</gx:coord>\n" : lPlace + "\n";
    mLast = nPoint;
    ++mHeld;
  }

  void endPiece() {
    if (mIsTimed)
      mText.write("<gx:Track>\n" + mWhens + mPositions + "</gx:Track>\n");
    else if (mHeld > 1)
      mText.write("<LineString>\n<coordinates>\n" + mPositions + "</coordinates>\n</LineString>\n");
    else
      mText.write("<Point>\n<coordinates>" + mPositions + "</coordinates>\n</Point>\n");
    mWhens.clear();
    mPositions.clear();
    mHeld = 0;
  }

  bool mIsInside = false;
  bool mIsTimed = true;
  size_t mHeld = 0;
  std::string mWhens, mPositions;  // of the points held
  TrackPoint mLast;
};

}  // namespace

const TrackFormat KML_FORMAT = {
    "kml",
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<kml xmlns=\"http://www.opengis.net/kml/2.2\" xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
    "<Document>\n<name>Track</name>\n"
    "<Style id=\"track\"><LineStyle><color>ffd06010</color><width>4</width></LineStyle></Style>\n",
    "</Document>\n</kml>\n", [](TrackText& nText, const std::string& nName, bool) -> std::unique_ptr<TrackPart> {
      return std::make_unique<KmlPart>(nText, nName);
    }};

}  // namespace logtool
