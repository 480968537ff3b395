#include "EpochBuilder.h"

#include <algorithm>

#include "SentenceTime.h"

namespace logtool {

namespace {

const double KMH_PER_KNOT = 1.852;

void setIfMissing(double nValue, double* npMember) {
  if (std::isnan(*npMember)) *npMember = nValue;
}

void setIfMissing(const SentenceFields& nFields, size_t nIndex, double* npMember) {
  if (std::isnan(*npMember)) *npMember = nFields.number(nIndex);
}

int64_t dayOf(const SentenceFields& nFields, uint32_t nType) {
  if (nType == tool::typeCode("RMC")) return tool::dayOfDate(nFields.text(9));
  if (nType != tool::typeCode("ZDA")) return -1;
  return tool::dayOfDate(nFields.text(4), nFields.text(3), nFields.text(2));
}

Fix fixOfQuality(char nQuality) {
  static const Fix FIXES[] = {FIX_NONE,         FIX_2D,           FIX_DIFFERENTIAL, FIX_2D,
                              FIX_DIFFERENTIAL, FIX_DIFFERENTIAL, FIX_ESTIMATED};
  return nQuality >= '0' && nQuality <= '6' ? FIXES[nQuality - '0'] : FIX_NONE;
}

Fix fixOfMode(char nMode) {
  if (nMode == 'E') return FIX_ESTIMATED;
  return nMode == 'D' || nMode == 'R' || nMode == 'F' ? FIX_DIFFERENTIAL : FIX_2D;
}

Fix fixOfStatus(std::string_view nStatus, bool nIsReckoning) {
  if (nStatus == "DR" || (nStatus == "RK" && nIsReckoning)) return FIX_ESTIMATED;
  if (nStatus == "D2" || nStatus == "D3") return FIX_DIFFERENTIAL;
  if (nStatus == "G3" || nStatus == "RK") return FIX_3D;
  return nStatus == "G2" ? FIX_2D : FIX_NONE;
}

}  // namespace

EpochBuilder::Kind EpochBuilder::kindOf(std::string_view nSentence, uint32_t nType) const {
  switch (nType) {
    case tool::typeCode("GGA"):
      return {&EpochBuilder::takeGga, 1};
    case tool::typeCode("GLL"):
      return {&EpochBuilder::takeGll, 5};
    case tool::typeCode("GSA"):
      return {&EpochBuilder::takeGsa, 0};
    case tool::typeCode("GSV"):
      return {mWantsSky && mPoint.mTimeOfDay >= 0 ? &EpochBuilder::takeGsv : nullptr, 0};
    case tool::typeCode("RMC"):
      return {&EpochBuilder::takeRmc, 1};
    case tool::typeCode("VTG"):
      return {&EpochBuilder::takeVtg, 0};
    case tool::typeCode("ZDA"):
      return {nullptr, 1};
    default:
      return {nSentence.substr(0, 9) == "$PUBX,00," ? &EpochBuilder::takePubx : nullptr, 2};
  }
}

bool EpochBuilder::onSentence(std::string_view nSentence) {
  const uint32_t lType = tool::sentenceTypeCode(nSentence);
  const Kind lKind = kindOf(nSentence, lType);
  if (lKind.mpTake == nullptr && lType != tool::typeCode("ZDA")) return true;
  const SentenceFields lFields(nSentence);
  const int64_t lTime = lKind.mTimeAt == 0 ? -1 : tool::timeOfDay(lFields.text(lKind.mTimeAt));
  const int64_t lDay = dayOf(lFields, lType);
  if ((lKind.mpTake != nullptr || lDay >= 0) && lTime >= 0 && lTime != mPoint.mTimeOfDay) beginAt(lTime);
  if (lDay >= 0) mDay.set(lDay, mPoint.mTimeOfDay);
  if (lKind.mpTake != nullptr) (this->*lKind.mpTake)(lFields);
  return true;
}

/// Gives away the point under way and begins one.
void EpochBuilder::beginAt(int64_t nTimeOfDay) {
  if (mPoint.mTimeOfDay >= 0) {
    endSky();
    if (mPoint.hasPosition())
      endPoint();
    else
      mSink.onEpochsWithoutFix(0, 1);
  }
  mPoint = {};
  mPoint.mTimeOfDay = nTimeOfDay;
  mPoint.mElapsedMs = mElapsed;
  mPoint.mId = mId;
}

void EpochBuilder::finish() {
  beginAt(-1);
  giveHeld();
}

void EpochBuilder::endPoint() {
  mPoint.mUtcMs = mDay.next(mPoint.mTimeOfDay);
  if (mPoint.mUtcMs < 0 && mHolds) {
    mHeld.push_back(mPoint);
    if (mHeld.size() == MAX_HELD) giveHeld();
    return;
  }
  giveHeld();
  give(mPoint);
}

void EpochBuilder::endSky() {
  if (mSky.mSatellites.empty()) return;
  mSky.mUtcMs = mDay.next(mPoint.mTimeOfDay);
  mSky.mElapsedMs = mPoint.mElapsedMs;
  mSink.onSky(mSky);
  mSky.mSatellites.clear();
}

void EpochBuilder::giveHeld() {
  mHolds = false;
  for (TrackPoint& lPoint : mHeld) {
    lPoint.mUtcMs = mDay.before(lPoint.mTimeOfDay);
    give(lPoint);
  }
  mHeld.clear();
}

void EpochBuilder::give(TrackPoint& nPoint) {
  nPoint.mIsBreak = isBreak(nPoint);
  mLast = nPoint;
  mSink.onPoint(nPoint);
}

// By the receiver's time where it is known: a recording may have been made slower or faster than that.
bool EpochBuilder::isBreak(const TrackPoint& nPoint) const {
  if (!mLast.hasPosition()) return true;
  if (mLast.mUtcMs < 0 || nPoint.mUtcMs < 0) return nPoint.mElapsedMs - mLast.mElapsedMs > BREAK_MS;
  return nPoint.mUtcMs < mLast.mUtcMs || nPoint.mUtcMs - mLast.mUtcMs > static_cast<int64_t>(BREAK_MS);
}

void EpochBuilder::setPosition(const SentenceFields& nFields, size_t nLatitudeAt) {
  if (mPoint.hasPosition()) return;
  const double lLatitude = nFields.degrees(nLatitudeAt);
  const double lLongitude = nFields.degrees(nLatitudeAt + 2);
  if (!(std::fabs(lLatitude) <= 90.0 && std::fabs(lLongitude) <= 180.0)) return;
  mPoint.mLatitude = lLatitude;
  mPoint.mLongitude = lLongitude;
}

// The sentences of an epoch tell of its fix in different words; the one that tells most stays.
void EpochBuilder::raiseFix(Fix nFix) { mPoint.mFix = std::max(mPoint.mFix, nFix); }

void EpochBuilder::takeGga(const SentenceFields& nFields) {
  const Fix lFix = fixOfQuality(nFields.letter(6));
  if (lFix == FIX_NONE) return;
  raiseFix(lFix);
  setPosition(nFields, 2);
  mPoint.mAltitude = nFields.number(9);
  mPoint.mGeoidSeparation = nFields.number(11);
  setIfMissing(nFields, 7, &mPoint.mSatellites);
  setIfMissing(nFields, 8, &mPoint.mHdop);
}

void EpochBuilder::takeGll(const SentenceFields& nFields) {
  if (nFields.letter(6) != 'A') return;
  setPosition(nFields, 1);
  raiseFix(fixOfMode(nFields.letter(7)));
}

void EpochBuilder::takeGsa(const SentenceFields& nFields) {
  const char lMode = nFields.letter(2);
  if (lMode != '2' && lMode != '3') return;
  raiseFix(lMode == '3' ? FIX_3D : FIX_2D);
  setIfMissing(nFields, 15, &mPoint.mPdop);
  setIfMissing(nFields, 16, &mPoint.mHdop);
  setIfMissing(nFields, 17, &mPoint.mVdop);
}

void EpochBuilder::takeRmc(const SentenceFields& nFields) {
  if (nFields.letter(2) != 'A' && nFields.letter(2) != 'D') return;
  raiseFix(fixOfMode(nFields.letter(12)));
  setPosition(nFields, 3);
  if (std::isnan(mPoint.mSpeedKmh)) mPoint.mSpeedKmh = nFields.number(7) * KMH_PER_KNOT;
  setIfMissing(nFields, 8, &mPoint.mCourse);
}

void EpochBuilder::takeVtg(const SentenceFields& nFields) {
  setIfMissing(nFields, 7, &mPoint.mSpeedKmh);
  setIfMissing(nFields, 1, &mPoint.mCourse);
}

void EpochBuilder::takePubx(const SentenceFields& nFields) {
  const Fix lFix = fixOfStatus(nFields.text(8), nFields.text(8) == "RK" && nFields.letter(20) == '1');
  if (lFix == FIX_NONE) return;
  raiseFix(lFix);
  setPosition(nFields, 3);
  setIfMissing(nFields, 11, &mPoint.mSpeedKmh);
  setIfMissing(nFields, 12, &mPoint.mCourse);
  setIfMissing(nFields, 15, &mPoint.mHdop);
  setIfMissing(nFields, 16, &mPoint.mVdop);
  setIfMissing(nFields, 18, &mPoint.mSatellites);
}

void EpochBuilder::takeGsv(const SentenceFields& nFields) {
  for (size_t i = 4; i + 3 < nFields.count(); i += 4) {
    const double lNumber = nFields.number(i);
    if (!(lNumber >= 1.0 && lNumber <= 999.0)) continue;
    takeSatellite({satelliteName(nFields.text(0).substr(1, 2), static_cast<int>(lNumber)), nFields.number(i + 1),
                   nFields.number(i + 2), nFields.number(i + 3)});
  }
}

/// One that was told of already has a further signal.
void EpochBuilder::takeSatellite(const SatelliteView& nView) {
  for (SatelliteView& lView : mSky.mSatellites) {
    if (!(lView.mName == nView.mName)) continue;
    setIfMissing(nView.mElevation, &lView.mElevation);
    setIfMissing(nView.mAzimuth, &lView.mAzimuth);
    lView.mSnr = std::fmax(lView.mSnr, nView.mSnr);
    return;
  }
  if (mSky.mSatellites.size() < MAX_SATELLITES) mSky.mSatellites.push_back(nView);
}

}  // namespace logtool
