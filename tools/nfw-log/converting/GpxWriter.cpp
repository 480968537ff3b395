
#include "Format.h"
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
    append("<trkpt lat=\"{:.7f}\" lon=\"{:.7f}\">", nPoint.mLatitude, nPoint.mLongitude);
    appendLength("<ele>{}</ele>", nPoint.mAltitude);
    if (nPoint.mUtcMs >= 0) append("<time>{}</time>", utcText(nPoint.mUtcMs));
    appendLength("<geoidheight>{}</geoidheight>", nPoint.mGeoidSeparation);
    append("<fix>{}</fix>", nPoint.isDeadReckoned() ? "none" : fixName(nPoint.mFix));
    appendNumber("<sat>{:.0f}</sat>", nPoint.mSatellites);
    appendNumber("<hdop>{:.2f}</hdop>", nPoint.mHdop);
    appendNumber("<vdop>{:.2f}</vdop>", nPoint.mVdop);
    appendNumber("<pdop>{:.2f}</pdop>", nPoint.mPdop);
    appendMotion(nPoint);
    mText.write(mLine + "</trkpt>\n");
  }

  void end() override { mText.write(mHasPoints ? "</trkseg>\n</trk>\n" : "</trk>\n"); }

 private:
  template <class... Args>
  void append(fmt::format_string<Args...> nFormat, const Args&... nArgs) {
    fmt::format_to(std::back_inserter(mLine), nFormat, nArgs...);
  }
  void appendNumber(fmt::format_string<const double&> nFormat, double nValue) {
    if (!std::isnan(nValue)) append(nFormat, nValue);
  }

  void appendLength(fmt::format_string<const std::string&> nFormat, double nValue) {
    if (!std::isnan(nValue)) append(nFormat, decimalText(nValue, 3));
  }

  void appendMotion(const TrackPoint& nPoint) {
    if (std::isnan(nPoint.mSpeedKmh) && std::isnan(nPoint.mCourse)) return;
    mLine += "<extensions><gpxtpx:TrackPointExtension>";
    appendNumber("<gpxtpx:speed>{:.3f}</gpxtpx:speed>", nPoint.mSpeedKmh / 3.6);
    appendNumber("<gpxtpx:course>{:.2f}</gpxtpx:course>", nPoint.mCourse);
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
