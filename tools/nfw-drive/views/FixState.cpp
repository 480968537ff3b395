#include "FixState.h"

#include "Format.h"
#include "JsonRecord.h"
#include "ModeField.h"
#include "NfwNmeaDataParser.h"
#include "SentenceText.h"
#include "SentenceTime.h"

namespace drive {

namespace {

const char* const FIXES[] = {"no fix", "2D", "3D"};
const char* const QUALITIES[] = {"invalid", "gps", "differential", "estimated", "unknown"};

bool hasPosition(const nfw::GnssSentenceCoordinate& nLatitude) { return nLatitude.direction != nfw::DIRECTION_NONE; }

std::string positionText(const nfw::GnssSentenceCoordinate& nLatitude, const nfw::GnssSentenceCoordinate& nLongitude) {
  return fmt::format("{:.7f} {:.7f}", tool::decimalDegrees(nLatitude), tool::decimalDegrees(nLongitude));
}

}  // namespace

void FixState::take(const nfw::RmcSentence& nRecord) {
  mRmc = nRecord;
  mDate = nRecord.date;
}

void FixState::takeReckoned(std::string_view nSentence) {
  const tool::TerminatedSentence lText(nSentence);
  const int lKind = nfw::NmeaDataParser::analyzeNmeaSentenceType(lText.mText, lText.mSize);
  nfw::GgaSentence lGga;
  nfw::RmcSentence lRmc;
  if (lKind == nfw::NMEA_GGA && nfw::NmeaDataParser::parseGgaSentence(lText.mText, lText.mSize, &lGga))
    mReckonedGga = lGga;
  if (lKind == nfw::NMEA_RMC && nfw::NmeaDataParser::parseRmcSentence(lText.mText, lText.mSize, &lRmc))
    mReckonedRmc = lRmc;
}

bool FixState::isReckoned() const {
  return mGga.quality == nfw::QUALITY_INVALID && !mRmc.status && mReckonedRmc.status;
}

void FixState::takeText(std::string_view nSentence) {
  mLacksMode = mLacksMode || tool::lacksMode(nSentence);
  const int64_t lTime = tool::sentenceTime(nSentence);
  if (lTime >= 0) mTimeMs = lTime;
}

std::string FixState::time() const {
  if (mTimeMs < 0) return "no time";
  const std::string lDate =
      mDate.day == 0 ? std::string() : fmt::format("{:04}-{:02}-{:02} ", mDate.year, mDate.month, mDate.day);
  return fmt::format("{}{:02}:{:02}:{:02}.{:03}", lDate, mTimeMs / 3600000, mTimeMs / 60000 % 60, mTimeMs / 1000 % 60,
                     mTimeMs % 1000);
}

std::string FixState::position() const {
  if (isReckoned() && hasPosition(mReckonedGga.latitude)) {
    return positionText(mReckonedGga.latitude, mReckonedGga.longitude);
  }
  if (mGga.quality == nfw::QUALITY_INVALID && !mRmc.status) return "no position";
  if (hasPosition(mGga.latitude)) return positionText(mGga.latitude, mGga.longitude);
  if (hasPosition(mRmc.latitude)) return positionText(mRmc.latitude, mRmc.longitude);
  return "no position";
}

bool FixState::hasMotion() const { return isReckoned() || mRmc.status || mVtg.mode != nfw::MODE_NOT_VALID; }

std::string FixState::speed() const {
  const nfw::RmcSentence& lRmc = isReckoned() ? mReckonedRmc : mRmc;
  const double lKmh = lRmc.status ? lRmc.speed * 1.852 : mVtg.speedKmh;
  return hasMotion() ? fmt::format("{:.1f} km/h", lKmh) : "no speed";
}

std::string FixState::course() const {
  const nfw::RmcSentence& lRmc = isReckoned() ? mReckonedRmc : mRmc;
  const double lCourse = lRmc.status ? lRmc.direction : mVtg.directionForTrueNorth;
  return hasMotion() ? fmt::format("{:.1f} deg", lCourse) : "no course";
}

std::string FixState::fix() const {
  const bool lIsWanting = mLacksMode && mGga.quality == nfw::QUALITY_INVALID;
  return fmt::format("{}, {}{}", FIXES[mGsa.mode], isReckoned() ? "reckoned" : QUALITIES[mGga.quality],
                     lIsWanting ? ": no mode field (NMEA before 2.3)" : "");
}

}  // namespace drive
