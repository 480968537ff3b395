#include "DecimalText.h"
#include "TrackWriter.h"
#include "WallClock.h"
#include "XmlText.h"

namespace logtool {

namespace {

/// GPX 1.1. It has no places for speed and course: they stand in the extension that readers know.
class GpxPart : public TrackPart {
 public:
  GpxPart(TrackText& nText, const std::string& nName) : TrackPart(nText) {
    mText.write("<trk>\n<name>" + xmlText(nName) + "</name>\n");
  }

  void add(const TrackPoint& nPoint) override {
    if (nPoint.mIsBreak && mHasPoints) mText.write("</trkseg>\n");
    if (nPoint.mIsBreak || !mHasPoints) mText.write("<trkseg>\n");
    mHasPoints = true;
    mLine.clear();
    append("<trkpt lat=\"", nPoint.mLatitude, 7, "\" lon=\"");
    append("", nPoint.mLongitude, 7, "\">");
    appendLength("<ele>", nPoint.mAltitude, "</ele>");
    if (nPoint.mUtcMs >= 0) {
      mLine += "<time>";
      appendUtc(nPoint.mUtcMs, &mLine);
      mLine += "</time>";
    }
    appendLength("<geoidheight>", nPoint.mGeoidSeparation, "</geoidheight>");
    mLine += "<fix>";
    mLine += nPoint.isDeadReckoned() ? "none" : fixName(nPoint.mFix);
    mLine += "</fix>";
    append("<sat>", nPoint.mSatellites, 0, "</sat>");
    append("<hdop>", nPoint.mHdop, 2, "</hdop>");
    append("<vdop>", nPoint.mVdop, 2, "</vdop>");
    append("<pdop>", nPoint.mPdop, 2, "</pdop>");
    appendMotion(nPoint);
    mLine += "</trkpt>\n";
    mText.write(mLine);
  }

  void end() override { mText.write(mHasPoints ? "</trkseg>\n</trk>\n" : "</trk>\n"); }

 private:
  // What was not told is left out.
  void append(const char* npBegin, double nValue, int nDecimals, const char* npEnd) {
    if (std::isnan(nValue)) return;
    mLine += npBegin;
    tool::appendFixed(nValue, nDecimals, &mLine);
    mLine += npEnd;
  }

  void appendLength(const char* npBegin, double nValue, const char* npEnd) {
    if (std::isnan(nValue)) return;
    mLine += npBegin;
    appendDecimal(nValue, 3, &mLine);
    mLine += npEnd;
  }

  void appendMotion(const TrackPoint& nPoint) {
    if (std::isnan(nPoint.mSpeedKmh) && std::isnan(nPoint.mCourse)) return;
    mLine += "<extensions><gpxtpx:TrackPointExtension>";
    append("<gpxtpx:speed>", nPoint.mSpeedKmh / 3.6, 3, "</gpxtpx:speed>");
    append("<gpxtpx:course>", nPoint.mCourse, 2, "</gpxtpx:course>");
    mLine += "</gpxtpx:TrackPointExtension></extensions>";
  }

  bool mHasPoints = false;
  std::string mLine;
};

std::string begin(const Document& nDocument) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<gpx version=\"1.1\" creator=\"nfw-log\" xmlns=\"http://www.topografix.com/GPX/1/1\""
         " xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\">\n<metadata>\n<name>" +
         xmlText(nDocument.mName) + "</name>\n" +
         (nDocument.mUtcMs >= 0 ? "<time>" + utcText(nDocument.mUtcMs) + "</time>\n" : "") + "</metadata>\n";
}

}  // namespace

const TrackFormat GPX_FORMAT = {"gpx", begin, "</gpx>\n", false,
                                [](TrackText& nText, const std::string& nName, bool) -> std::unique_ptr<TrackPart> {
                                  return std::make_unique<GpxPart>(nText, nName);
                                }};

}  // namespace logtool
