#include "DecimalText.h"
#include "PrintableText.h"
#include "TrackWriter.h"
#include "WallClock.h"

namespace logtool {

namespace {

/// Comma-separated values (RFC 4180), with a header that names each column and its unit. What was not told is empty.
class CsvPart : public TrackPart {
 public:
  CsvPart(TrackText& nText, const std::string& nName) : TrackPart(nText), mName(quoted(nName)) {}

  void add(const TrackPoint& nPoint) override {
    mLine.clear();
    if (nPoint.mUtcMs >= 0) appendUtc(nPoint.mUtcMs, &mLine);
    add(static_cast<double>(nPoint.mElapsedMs) / 1000.0, 3);
    mLine += ',';
    tool::appendNumber(static_cast<uint64_t>(nPoint.mId), &mLine);
    add(nPoint.mLatitude, 7);
    add(nPoint.mLongitude, 7);
    addLength(nPoint.mAltitude);
    addLength(nPoint.mGeoidSeparation);
    add(nPoint.mSpeedKmh, 3);
    add(nPoint.mCourse, 2);
    mLine += ',';
    mLine += fixName(nPoint.mFix);
    add(nPoint.mSatellites, 0);
    add(nPoint.mHdop, 2);
    add(nPoint.mVdop, 2);
    add(nPoint.mPdop, 2);
    mLine += nPoint.isDeadReckoned() ? ",1," : ",0,";
    mLine += mName;
    mLine += "\r\n";
    mText.write(mLine);
  }

 private:
  static std::string quoted(const std::string& nName) {
    std::string lText = "\"";
    for (const char lByte : tool::printableText(nName)) lText += lByte == '"' ? "\"\"" : std::string(1, lByte);
    return lText.find_first_of(",\"", 1) == std::string::npos ? lText.substr(1) : lText + '"';
  }

  void addLength(double nValue) {
    mLine += ',';
    if (!std::isnan(nValue)) appendDecimal(nValue, 3, &mLine);
  }
  void add(double nValue, int nDecimals) {
    mLine += ',';
    if (!std::isnan(nValue)) tool::appendFixed(nValue, nDecimals, &mLine);
  }

  const std::string mName;
  std::string mLine;
};

}  // namespace

const TrackFormat CSV_FORMAT = {
    "csv",
    [](const Document&) -> std::string {
      return "time_utc,elapsed_s,id,latitude_deg,longitude_deg,altitude_m,geoid_separation_m,speed_kmh,course_deg,fix,"
             "satellites,hdop,vdop,pdop,dead_reckoned,track\r\n";
    },
    "", true,
    [](TrackText& nText, const std::string& nName, bool) -> std::unique_ptr<TrackPart> {
      return std::make_unique<CsvPart>(nText, nName);
    }};

}  // namespace logtool
