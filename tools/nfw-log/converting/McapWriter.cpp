#include "McapWriter.h"

#include <filesystem>

#include "DecimalText.h"
#include "Format.h"
#include "JsonObject.h"
#include "PrintableText.h"

namespace logtool {

namespace {

#define TIMESTAMP                                                                                      \
  R"("timestamp":{"type":"object","title":"time","properties":{"sec":{"type":"integer","minimum":0},)" \
  R"("nsec":{"type":"integer","minimum":0,"maximum":999999999}},"description":"UTC, since 1970"})"

// Of the well-known type, the fields that a position has here.
const char* const FIX_SCHEMA = R"({"title":"foxglove.LocationFix","type":"object","properties":{)" TIMESTAMP
                               R"(,"frame_id":{"type":"string","description":"The track"},)"
                               R"("latitude":{"type":"number","description":"Degrees"},)"
                               R"("longitude":{"type":"number","description":"Degrees"},)"
                               R"("altitude":{"type":"number","description":"Metres above mean sea level"},)"
                               R"("position_covariance":{"type":"array","items":{"type":"number"},)"
                               R"("minItems":9,"maxItems":9},)"
                               R"("position_covariance_type":{"title":"foxglove.PositionCovarianceType","oneOf":[)"
                               R"({"title":"UNKNOWN","const":0},{"title":"APPROXIMATED","const":1},)"
                               R"({"title":"DIAGONAL_KNOWN","const":2},{"title":"KNOWN","const":3}]}}})";

const char* const MOTION_SCHEMA = R"({"title":"nfw.Motion","type":"object","properties":{)" TIMESTAMP
                                  R"(,"elapsed_s":{"type":"number"},"log_type_id":{"type":"integer"},)"
                                  R"("speed_kmh":{"type":"number"},"course_deg":{"type":"number"},)"
                                  R"("fix":{"type":"string","enum":["none","2d","3d","dgps","estimated"]},)"
                                  R"("dead_reckoned":{"type":"boolean"},"satellites":{"type":"integer"},)"
                                  R"("hdop":{"type":"number"},"vdop":{"type":"number"},"pdop":{"type":"number"},)"
                                  R"("geoid_separation_m":{"type":"number"}}})";
const char* const SKY_SCHEMA = R"({"title":"nfw.Satellites","type":"object","properties":{)" TIMESTAMP
                               R"(,"satellites":{"type":"array","items":{"type":"object","properties":{)"
                               R"("constellation":{"type":"string"},"number":{"type":"integer"},)"
                               R"("elevation_deg":{"type":"number"},"azimuth_deg":{"type":"number"},)"
                               R"("snr_dbhz":{"type":"number"}}}}}})";
#undef TIMESTAMP

void addTime(int64_t nMs, tool::JsonObject& nObject) {
  tool::JsonObject lTime(nObject.key("timestamp"));
  lTime.number("sec", static_cast<uint64_t>(nMs / 1000));
  lTime.number("nsec", static_cast<uint64_t>(nMs % 1000) * 1000000);
}

/// What was not told is left out.
void addNumber(const char* npKey, double nValue, int nDecimals, tool::JsonObject& nObject) {
  if (!std::isnan(nValue)) tool::appendFixed(nValue, nDecimals, nObject.key(npKey));
}

/// "drive.log, dead reckoning" becomes "drive.log/dead_reckoning".
std::string topicOf(const std::string& nName) {
  std::string lTopic = tool::printableText(nName);
  for (size_t i = 0; (i = lTopic.find(", ")) != std::string::npos;) lTopic.replace(i, 2, "/");
  for (char& lByte : lTopic) {
    if (lByte == ' ') lByte = '_';
  }
  return lTopic;
}

}  // namespace

McapWriter::McapWriter(OutputFile& nOutput, const std::vector<Recording>& nRecordings)
    : mFile(nOutput),
      mFixSchema(mFile.addSchema("foxglove.LocationFix", FIX_SCHEMA)),
      mMotionSchema(mFile.addSchema("nfw.Motion", MOTION_SCHEMA)),
      mSkySchema(mFile.addSchema("nfw.Satellites", SKY_SCHEMA)) {
  for (const Recording& lRecording : nRecordings) {
    const std::string lName = topicOf(std::filesystem::path(lRecording.mName).filename().string());
    mSkyTopics.push_back(nRecordings.size() == 1 ? "/satellites" : "/" + lName + "/satellites");
  }
  mSkyChannels.resize(mSkyTopics.size());
}

void McapWriter::onTrack(size_t nTrack, const std::string& nName) {
  const std::string lTopic = topicOf(nName);
  mTracks[nTrack] = {lTopic, mFile.addChannel(mFixSchema, "/" + lTopic + "/fix"),
                     mFile.addChannel(mMotionSchema, "/" + lTopic + "/motion")};
}

void McapWriter::onPoint(const TrackPoint& nPoint) {
  ++mPoints;
  if (nPoint.mUtcMs < 0) ++mUndated;
  const int64_t lMs = nPoint.mUtcMs >= 0 ? nPoint.mUtcMs : static_cast<int64_t>(nPoint.mElapsedMs);
  const Track& lTrack = mTracks[nPoint.mTrack];
  addFix(nPoint, lTrack, lMs);
  addMotion(nPoint, lTrack, lMs);
}

void McapWriter::addFix(const TrackPoint& nPoint, const Track& nTrack, int64_t nMs) {
  {
    tool::JsonObject lObject(&mJson);
    addTime(nMs, lObject);
    lObject.text("frame_id", nTrack.mName);
    addNumber("latitude", nPoint.mLatitude, 7, lObject);
    addNumber("longitude", nPoint.mLongitude, 7, lObject);
    addNumber("altitude", nPoint.mAltitude, 3, lObject);
    lObject.number("position_covariance_type", 0);  // a receiver tells its geometry, not its error
  }
  add(nTrack.mFixes, nMs);
}

void McapWriter::addMotion(const TrackPoint& nPoint, const Track& nTrack, int64_t nMs) {
  {
    tool::JsonObject lObject(&mJson);
    addTime(nMs, lObject);
    addNumber("elapsed_s", static_cast<double>(nPoint.mElapsedMs) / 1000.0, 3, lObject);
    lObject.number("log_type_id", static_cast<uint64_t>(nPoint.mId));
    addNumber("speed_kmh", nPoint.mSpeedKmh, 3, lObject);
    addNumber("course_deg", nPoint.mCourse, 2, lObject);
    lObject.text("fix", fixName(nPoint.mFix));
    lObject.flag("dead_reckoned", nPoint.isDeadReckoned());
    addNumber("satellites", nPoint.mSatellites, 0, lObject);
    addNumber("hdop", nPoint.mHdop, 2, lObject);
    addNumber("vdop", nPoint.mVdop, 2, lObject);
    addNumber("pdop", nPoint.mPdop, 2, lObject);
    addNumber("geoid_separation_m", nPoint.mGeoidSeparation, 3, lObject);
  }
  add(nTrack.mMotion, nMs);
}

void McapWriter::onSky(const Sky& nSky) {
  const int64_t lMs = nSky.mUtcMs >= 0 ? nSky.mUtcMs : static_cast<int64_t>(nSky.mElapsedMs);
  uint16_t& lChannel = mSkyChannels[mRecording];
  if (lChannel == 0) lChannel = mFile.addChannel(mSkySchema, mSkyTopics[mRecording]);
  {
    tool::JsonObject lObject(&mJson);
    addTime(lMs, lObject);
    tool::JsonObject lList(lObject.key("satellites"), '[');
    for (const SatelliteView& lView : nSky.mSatellites) {
      tool::JsonObject lSatellite(lList.element());
      lSatellite.text("constellation", constellationName(lView.mName.mConstellation));
      lSatellite.number("number", static_cast<uint64_t>(lView.mName.mNumber));
      addNumber("elevation_deg", lView.mElevation, 0, lSatellite);
      addNumber("azimuth_deg", lView.mAzimuth, 0, lSatellite);
      addNumber("snr_dbhz", lView.mSnr, 0, lSatellite);
    }
  }
  add(lChannel, lMs);
}

void McapWriter::add(uint16_t nChannel, int64_t nMs) {
  mFile.addMessage(nChannel, static_cast<uint64_t>(nMs) * 1000000, mJson);
  mJson.clear();
}

}  // namespace logtool
