#include <fmt/format.h>

#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

/// GPX 1.1. It has no places for speed and course: they stand in the extension that readers know.
class GpxWriter : public TrackWriter {
 public:
  using TrackWriter::TrackWriter;

  void begin() override {
    mOutput.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<gpx version=\"1.1\" creator=\"nfw-log\" xmlns=\"http://www.topografix.com/GPX/1/1\""
        " xmlns:gpxtpx=\"http://www.garmin.com/xmlschemas/TrackPointExtension/v2\">\n"
        "<trk>\n");
  }

  void onPoint(const TrackPoint& nPoint) override {
    if (nPoint.mIsBreak && mPoints > 0) mOutput.write("</trkseg>\n");
    if (nPoint.mIsBreak || mPoints == 0) mOutput.write("<trkseg>\n");
    ++mPoints;
    mText.clear();
    append("<trkpt lat=\"{:.7f}\" lon=\"{:.7f}\">", nPoint.mLatitude, nPoint.mLongitude);
    appendNumber("<ele>{:.1f}</ele>", nPoint.mAltitude);
    if (nPoint.mUtcMs >= 0) append("<time>{}</time>", utcText(nPoint.mUtcMs));
    appendNumber("<geoidheight>{:.1f}</geoidheight>", nPoint.mGeoidSeparation);
    append("<fix>{}</fix>", nPoint.isDeadReckoned() ? "none" : fixName(nPoint.mFix));
    appendNumber("<sat>{:.0f}</sat>", nPoint.mSatellites);
    appendNumber("<hdop>{:.2f}</hdop>", nPoint.mHdop);
    appendNumber("<vdop>{:.2f}</vdop>", nPoint.mVdop);
    appendNumber("<pdop>{:.2f}</pdop>", nPoint.mPdop);
    appendMotion(nPoint);
    mOutput.write(mText + "</trkpt>\n");
  }

  void end() override { mOutput.write(mPoints > 0 ? "</trkseg>\n</trk>\n</gpx>\n" : "</trk>\n</gpx>\n"); }

 private:
  template <class... Args>
  void append(fmt::format_string<Args...> nFormat, const Args&... nArgs) {
    fmt::format_to(std::back_inserter(mText), nFormat, nArgs...);
  }
  void appendNumber(fmt::format_string<const double&> nFormat, double nValue) {
    if (!std::isnan(nValue)) append(nFormat, nValue);
  }

  void appendMotion(const TrackPoint& nPoint) {
    if (std::isnan(nPoint.mSpeedKmh) && std::isnan(nPoint.mCourse)) return;
    mText += "<extensions><gpxtpx:TrackPointExtension>";
    appendNumber("<gpxtpx:speed>{:.3f}</gpxtpx:speed>", nPoint.mSpeedKmh / 3.6);
    appendNumber("<gpxtpx:course>{:.2f}</gpxtpx:course>", nPoint.mCourse);
    mText += "</gpxtpx:TrackPointExtension></extensions>";
  }

  std::string mText;
};

}  // namespace

std::unique_ptr<TrackWriter> makeGpxWriter(OutputFile& nOutput) { return std::make_unique<GpxWriter>(nOutput); }

}  // namespace logtool
