#include "FixEpoch.h"

#include <algorithm>
#include <cmath>

#include "CivilTime.h"
#include "JsonObject.h"
#include "JsonRecord.h"
#include "NfwNmeaDataParser.h"
#include "SentenceText.h"
#include "SentenceTime.h"

namespace drive {

namespace {

const double KNOT = 1852.0 / 3600.0;  // m/s
const double KMH = 1.0 / 3.6;
const double NO_VALUE = std::nan("");
const char* const QUALITIES[] = {"invalid", "gps", "differential", "estimated", "unknown"};

// Digits beyond say nothing: 0.1 mm, 0.1 mm/s.
double roundedTo(double nValue, double nPlaces) { return std::round(nValue * nPlaces) / nPlaces; }

// A record holds 0 for an empty field.
double unlessZero(double nValue) { return nValue > 0.0 ? nValue : NO_VALUE; }

template <class Record, class Parse>
void parse(const tool::TerminatedSentence& nText, Parse nParse, std::optional<Record>* npRecord) {
  Record lRecord;
  if (nParse(nText.mText, nText.mSize, &lRecord)) *npRecord = lRecord;
}

void addCount(const char* npKey, int nValue, tool::JsonObject& nObject) {
  nValue < 0 ? nObject.null(npKey) : nObject.number(npKey, static_cast<uint64_t>(nValue));
}

}  // namespace

/// NaN: not known.
struct FixEpoch::Values {
  double mLatitude = NO_VALUE, mLongitude = NO_VALUE, mAltitude = NO_VALUE;
  double mSpeed = NO_VALUE, mCourse = NO_VALUE;
  double mHorizontalAccuracy = NO_VALUE, mVerticalAccuracy = NO_VALUE;

  template <class Record>
  void takePosition(const Record& nRecord) {
    if (nRecord.latitude.direction == nfw::DIRECTION_NONE) return;
    mLatitude = tool::decimalDegrees(nRecord.latitude);
    mLongitude = tool::decimalDegrees(nRecord.longitude);
  }
  void takeMotion(double nSpeed, double nCourse) {
    mSpeed = nSpeed;
    mCourse = nCourse;
  }
  void takeAccuracy(const nfw::PubxSentence& nRecord) {
    mHorizontalAccuracy = unlessZero(nRecord.hacc);
    mVerticalAccuracy = unlessZero(nRecord.vacc);
  }
};

void FixEpoch::begin() {
  mGga.reset();
  mRmc.reset();
  mGll.reset();
  mGsa.reset();
  mVtg.reset();
  mPubx.reset();
  mSky.clear();
}

// Midnight comes before the sentence that tells the new date.
void FixEpoch::takeText(std::string_view nSentence) {
  mSky.takeText(nSentence);
  const int64_t lTime = tool::sentenceTime(nSentence);
  if (mDay >= 0 && lTime >= 0 && lTime < mTimeMs - tool::MS_PER_DAY / 2) ++mDay;
  if (lTime >= 0) mTimeMs = lTime;
  const int64_t lDay = tool::sentenceDay(nSentence);
  if (lDay >= 0) mDay = lDay;
}

void FixEpoch::takeReckoned(std::string_view nSentence) {
  const int64_t lTime = tool::sentenceTime(nSentence);
  if (lTime >= 0 && (mReports.empty() || mReports.back().mTimeMs != lTime)) mReports.push_back({lTime, {}, {}, {}});
  if (mReports.size() > MAX_REPORTS) mReports.pop_front();
  if (mReports.empty()) return;
  Report& lReport = mReports.back();
  const tool::TerminatedSentence lText(nSentence);
  const int lKind = nfw::NmeaDataParser::analyzeNmeaSentenceType(lText.mText, lText.mSize);
  if (lKind == nfw::NMEA_GGA) parse(lText, &nfw::NmeaDataParser::parseGgaSentence, &lReport.mGga);
  if (lKind == nfw::NMEA_RMC) parse(lText, &nfw::NmeaDataParser::parseRmcSentence, &lReport.mRmc);
  if (lKind == nfw::NMEA_PUBX) parse(lText, &nfw::NmeaDataParser::parsePubxSentence, &lReport.mPubx);
}

bool FixEpoch::hasFix() const {
  return (mGga && mGga->quality != nfw::QUALITY_INVALID) || (mRmc && mRmc->status) || (mGll && mGll->status);
}

const FixEpoch::Report* FixEpoch::report() const {
  const auto lIsOfIt = [this](const Report& nReport) { return nReport.mTimeMs == mTimeMs && nReport.mPubx; };
  const auto lFound = std::find_if(mReports.begin(), mReports.end(), lIsOfIt);
  return lFound == mReports.end() ? nullptr : &*lFound;
}

bool FixEpoch::isReckoned() const {
  const Report* const lpReport = hasFix() ? nullptr : report();
  return lpReport != nullptr && lpReport->mRmc && lpReport->mRmc->status;
}

std::string FixEpoch::time() const {
  const tool::CivilTime lTime = tool::civilTime(std::max<int64_t>(mDay, 0) * tool::MS_PER_DAY + mTimeMs);
  const std::string lDate =
      mDay < 0 ? std::string() : fmt::format("{:04}-{:02}-{:02}T", lTime.mYear, lTime.mMonth, lTime.mDay);
  return fmt::format("{}{:02}:{:02}:{:02}.{:03}Z", lDate, lTime.mHour, lTime.mMinute, lTime.mSecond,
                     lTime.mMillisecond);
}

const char* FixEpoch::fix() const {
  static const char* const FIXES[] = {"fix", "2D", "3D"};
  if (isReckoned()) return "reckoned";
  return !hasFix() ? "none" : mGsa ? FIXES[mGsa->mode] : FIXES[0];
}

FixEpoch::Values FixEpoch::values() const { return isReckoned() ? reckoned() : received(); }

// What has more digits goes last.
FixEpoch::Values FixEpoch::received() const {
  Values lValues;
  if (!hasFix()) return lValues;
  if (mRmc && mRmc->status) lValues.takePosition(*mRmc);
  if (mGll && mGll->status) lValues.takePosition(*mGll);
  if (mGga && mGga->quality != nfw::QUALITY_INVALID) {
    lValues.takePosition(*mGga);
    lValues.mAltitude = mGga->altitude;
  }
  if (mVtg && mVtg->mode != nfw::MODE_NOT_VALID) {
    lValues.takeMotion(mVtg->speedKmh * KMH, mVtg->directionForTrueNorth);
  }
  if (mRmc && mRmc->status) lValues.takeMotion(mRmc->speed * KNOT, mRmc->direction);
  if (mPubx) lValues.takeAccuracy(*mPubx);
  return lValues;
}

FixEpoch::Values FixEpoch::reckoned() const {
  const Report& lReport = *report();
  Values lValues;
  lValues.takePosition(*lReport.mRmc);
  lValues.takeMotion(lReport.mRmc->speed * KNOT, lReport.mRmc->direction);
  if (lReport.mGga && lReport.mGga->quality != nfw::QUALITY_INVALID) lValues.mAltitude = lReport.mGga->altitude;
  lValues.takeAccuracy(*lReport.mPubx);
  return lValues;
}

void FixEpoch::appendJson(std::string* npText) const {
  const Values lValues = values();
  tool::JsonObject lObject(npText);
  lObject.text("type", "epoch");
  lObject.text("time", time());
  lObject.text("fix", fix());
  mGga ? lObject.text("quality", QUALITIES[mGga->quality]) : lObject.null("quality");
  lObject.real("latitude", roundedTo(lValues.mLatitude, 1e9));
  lObject.real("longitude", roundedTo(lValues.mLongitude, 1e9));
  lObject.real("altitude", lValues.mAltitude);
  lObject.real("speed", roundedTo(lValues.mSpeed, 1e4));
  lObject.real("course", lValues.mCourse);
  lObject.real("horizontal_accuracy", lValues.mHorizontalAccuracy);
  lObject.real("vertical_accuracy", lValues.mVerticalAccuracy);
  lObject.real("pdop", mGsa ? unlessZero(mGsa->pdop) : NO_VALUE);
  lObject.real("hdop", mGga ? unlessZero(mGga->hdop) : mGsa ? unlessZero(mGsa->hdop) : NO_VALUE);
  lObject.real("vdop", mGsa ? unlessZero(mGsa->vdop) : NO_VALUE);
  addCount("satellites_used", mGga ? static_cast<int>(mGga->satelliteCount) : -1, lObject);
  if (mSky.isTold()) return appendSatellites(lObject.key("satellites"));
  lObject.null("satellites");
}

void FixEpoch::appendSatellites(std::string* npText) const {
  tool::JsonObject lList(npText, '[');
  for (const Sky::Satellite& lSatellite : mSky.satellites()) {
    tool::JsonObject lObject(lList.element());
    lObject.text("system", lSatellite.mSystem);
    addCount("id", lSatellite.mId, lObject);
    addCount("elevation", lSatellite.mElevation, lObject);
    addCount("azimuth", lSatellite.mAzimuth, lObject);
    addCount("snr", lSatellite.mSnr, lObject);
    lObject.flag("used", lSatellite.mIsUsed);
  }
}

}  // namespace drive
