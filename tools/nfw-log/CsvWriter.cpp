#include <fmt/format.h>

#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

/// Comma-separated values (RFC 4180), with a header that names each column and its unit. What was not told is empty.
class CsvWriter : public TrackWriter {
 public:
  using TrackWriter::TrackWriter;

  void begin() override {
    mOutput.write(
        "time_utc,elapsed_s,id,latitude_deg,longitude_deg,altitude_m,geoid_separation_m,speed_kmh,course_deg,fix,"
        "satellites,hdop,vdop,pdop,dead_reckoned\r\n");
  }

  void onPoint(const TrackPoint& nPoint) override {
    ++mPoints;
    mText.clear();
    if (nPoint.mUtcMs >= 0) mText = utcText(nPoint.mUtcMs);
    fmt::format_to(std::back_inserter(mText), ",{:.3f},{}", static_cast<double>(nPoint.mElapsedMs) / 1000.0,
                   nPoint.mId);
    add(nPoint.mLatitude, 7);
    add(nPoint.mLongitude, 7);
    add(nPoint.mAltitude, 1);
    add(nPoint.mGeoidSeparation, 1);
    add(nPoint.mSpeedKmh, 3);
    add(nPoint.mCourse, 2);
    mText += std::string(",") + fixName(nPoint.mFix);
    add(nPoint.mSatellites, 0);
    add(nPoint.mHdop, 2);
    add(nPoint.mVdop, 2);
    add(nPoint.mPdop, 2);
    mText += nPoint.isDeadReckoned() ? ",1\r\n" : ",0\r\n";
    mOutput.write(mText);
  }

  void end() override {}

 private:
  void add(double nValue, int nDecimals) {
    mText += ',';
    if (!std::isnan(nValue)) fmt::format_to(std::back_inserter(mText), "{:.{}f}", nValue, nDecimals);
  }

  std::string mText;
};

}  // namespace

std::unique_ptr<TrackWriter> makeCsvWriter(OutputFile& nOutput) { return std::make_unique<CsvWriter>(nOutput); }

}  // namespace logtool
