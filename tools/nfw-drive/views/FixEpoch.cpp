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

template <class Record>
void takePosition(const Record& nRecord, FixValues* npValues) {
  if (nRecord.latitude.direction == nfw::DIRECTION_NONE) return;
  npValues->mLatitude = tool::decimalDegrees(nRecord.latitude);
  npValues->mLongitude = tool::decimalDegrees(nRecord.longitude);
}

void takeMotion(double nSpeed, double nCourse, FixValues* npValues) {
  npValues->mSpeed = nSpeed;
  npValues->mCourse = nCourse;
}

void takeAccuracy(const nfw::PubxSentence& nRecord, FixValues* npValues) {
  npValues->mHorizontalAccuracy = unlessZero(nRecord.hacc);
  npValues->mVerticalAccuracy = unlessZero(nRecord.vacc);
}

void addCount(const char* npKey, int nValue, tool::JsonObject& nObject) {
  nValue < 0 ? nObject.null(npKey) : nObject.number(npKey, static_cast<uint64_t>(nValue));
}

}  // namespace

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

const FixEpoch::Report* FixEpoch::reportAt(int64_t nTimeMs) const {
  const auto lIsOfIt = [&](const Report& nReport) { return nReport.mTimeMs == nTimeMs && nReport.mPubx; };
  const auto lFound = std::find_if(mReports.begin(), mReports.end(), lIsOfIt);
  return lFound == mReports.end() ? nullptr : &*lFound;
}

bool FixEpoch::isReckoned() const {
  const Report* const lpReport = hasFix() ? nullptr : report();
  return lpReport != nullptr && lpReport->mRmc && lpReport->mRmc->status;
}

std::string FixEpoch::time() const {
  if (mTimeMs < 0) return {};
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

const char* FixEpoch::quality() const { return mGga ? QUALITIES[mGga->quality] : nullptr; }

FixValues FixEpoch::values() const { return isReckoned() ? valuesOf(*report()) : received(); }

// What has more digits goes last.
FixValues FixEpoch::received() const {
  FixValues lValues;
  if (!hasFix()) return lValues;
  if (mRmc && mRmc->status) takePosition(*mRmc, &lValues);
  if (mGll && mGll->status) takePosition(*mGll, &lValues);
  if (mGga && mGga->quality != nfw::QUALITY_INVALID) {
    takePosition(*mGga, &lValues);
    lValues.mAltitude = mGga->altitude;
  }
  if (mVtg && mVtg->mode != nfw::MODE_NOT_VALID) {
    takeMotion(mVtg->speedKmh * KMH, mVtg->directionForTrueNorth, &lValues);
  }
  if (mRmc && mRmc->status) takeMotion(mRmc->speed * KNOT, mRmc->direction, &lValues);
  if (mPubx) takeAccuracy(*mPubx, &lValues);
  return lValues;
}

FixValues FixEpoch::valuesOf(const Report& nReport) {
  FixValues lValues;
  takePosition(*nReport.mRmc, &lValues);
  takeMotion(nReport.mRmc->speed * KNOT, nReport.mRmc->direction, &lValues);
  if (nReport.mGga && nReport.mGga->quality != nfw::QUALITY_INVALID) lValues.mAltitude = nReport.mGga->altitude;
  takeAccuracy(*nReport.mPubx, &lValues);
  return lValues;
}

std::optional<FixValues> FixEpoch::reckonedFor(const FixEpoch& nEpoch) const {
  const Report* const lpReport = reportAt(nEpoch.mTimeMs);
  if (lpReport == nullptr || !lpReport->mRmc || !lpReport->mRmc->status) return std::nullopt;
  return valuesOf(*lpReport);
}

std::optional<FixValues> FixEpoch::lastReckoned() const {
  const auto lIsOne = [](const Report& n) { return n.mPubx && n.mRmc && n.mRmc->status; };
  const auto lFound = std::find_if(mReports.rbegin(), mReports.rend(), lIsOne);
  return lFound == mReports.rend() ? std::nullopt : std::optional<FixValues>(valuesOf(*lFound));
}

double FixEpoch::pdop() const { return mGsa ? unlessZero(mGsa->pdop) : NO_VALUE; }
double FixEpoch::hdop() const { return mGga ? unlessZero(mGga->hdop) : mGsa ? unlessZero(mGsa->hdop) : NO_VALUE; }
double FixEpoch::vdop() const { return mGsa ? unlessZero(mGsa->vdop) : NO_VALUE; }

void FixEpoch::appendJson(std::string* npText, std::string_view nSource) const {
  const FixValues lValues = values();
  tool::JsonObject lObject(npText);
  lObject.text("type", "epoch");
  if (!nSource.empty()) lObject.text("source", nSource);
  lObject.text("time", time());
  lObject.text("fix", fix());
  quality() != nullptr ? lObject.text("quality", quality()) : lObject.null("quality");
  lObject.real("latitude", roundedTo(lValues.mLatitude, 1e9));
  lObject.real("longitude", roundedTo(lValues.mLongitude, 1e9));
  lObject.real("altitude", lValues.mAltitude);
  lObject.real("speed", roundedTo(lValues.mSpeed, 1e4));
  lObject.real("course", lValues.mCourse);
  lObject.real("horizontal_accuracy", lValues.mHorizontalAccuracy);
  lObject.real("vertical_accuracy", lValues.mVerticalAccuracy);
  lObject.real("pdop", pdop());
  lObject.real("hdop", hdop());
  lObject.real("vdop", vdop());
  addCount("satellites_used", used(), lObject);
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
