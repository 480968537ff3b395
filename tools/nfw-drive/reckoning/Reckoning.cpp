#include "Reckoning.h"

#include <algorithm>
#include <cmath>

#include "SentenceTime.h"

namespace drive {

namespace {

using namespace ZTSDeadReckoningDef;

const double KNOTS = 3600.0 / 1852.0;
const double KMH = 3.6;
const int64_t MAX_GAP_MS = 10000;  // over a longer one nobody knows the motion
const double MAX_DOP = 99.99;
const double DOP_GROWTH = 0.1;        // in a second
const double ACCURACY_GROWTH = 0.01;  // of the distance
const double ACCURACY_OF_DOP = 2.5;   // metres
const unsigned char FIX_2D = 2;       // the height stays as it was
const unsigned char PUBX_2D = 2, PUBX_3D = 3, PUBX_DEAD_RECKONING = 1;

double grown(double nDop, double nGrowth) { return std::min(nDop + nGrowth, MAX_DOP); }

unsigned char qualityOf(char nMode) { return nMode == 'E' ? 6 : nMode == 'D' ? 2 : 1; }
char modeOf(unsigned char nQuality) { return nQuality == 6 ? 'E' : nQuality == 2 ? 'D' : 'A'; }

// The receiver's own; of the sentences that have it, the first.
Motion motionOf(const EpochRecords& nRecords, const Motion& nBefore) {
  const EpochRecords::Info& lInfo = nRecords.get();
  if (nRecords.hasRmc()) return {lInfo.rmc.speed / KNOTS, lInfo.rmc.course};
  if (nRecords.hasVtg()) return {lInfo.vtg.speedKnot / KNOTS, lInfo.vtg.courseTrue};
  return nBefore;
}

}  // namespace

void Reckoning::setFix(const EpochRecords& nRecords, const Motion* npMotion, int64_t nTimeMs) {
  mTimeMs = nTimeMs;
  mPlace = *nRecords.getFix();
  mMotion = npMotion != nullptr ? *npMotion : motionOf(nRecords, mMotion);
  mWithoutFix = mDriven = 0.0;
  const Info& lInfo = nRecords.get();
  mMode = nRecords.hasRmc() ? lInfo.rmc.mode : modeOf(lInfo.gga.quality);
  if (mMode == NONE) mMode = modeOf(lInfo.gga.quality);
  if (nRecords.hasRmc()) mVariation = lInfo.rmc.variation;
  if (nRecords.hasGga()) {
    mAltitude = lInfo.gga.altitude;
    mGeoidSeparation = lInfo.gga.geoidSeparation;
  }
  noteQuality(nRecords);
}

void Reckoning::noteQuality(const EpochRecords& nRecords) {
  const Info& lInfo = nRecords.get();
  if (nRecords.hasGga()) mDops.mHorizontal = lInfo.gga.hdop;
  if (lInfo.gsaCount > 0) {
    mDops.mPosition = lInfo.gsa[0].pdop;
    mDops.mHorizontal = lInfo.gsa[0].hdop;
    mDops.mVertical = lInfo.gsa[0].vdop;
  }
  if (nRecords.hasPubx()) mDops.mTime = lInfo.pubx.tdop;
  mHacc = nRecords.hasPubx() ? lInfo.pubx.hacc : ACCURACY_OF_DOP * mDops.mHorizontal;
  mVacc = nRecords.hasPubx() ? lInfo.pubx.vacc : ACCURACY_OF_DOP * mDops.mVertical;
  mHasHeight = lInfo.gsaCount > 0 ? lInfo.gsa[0].fixMode > FIX_2D : nRecords.hasGga();
  mSatellites = nRecords.hasGga() ? lInfo.gga.satellites : nRecords.usedCount();
}

// The course between two epochs is the one in the middle of the turn, the speed the mean.
void Reckoning::goOn(const Motion* npMotion, int64_t nTimeMs) {
  const Motion lMotion = npMotion != nullptr ? *npMotion : mMotion;
  const double lSeconds = secondsTo(nTimeMs);
  const double lMetres = (mMotion.mSpeed + lMotion.mSpeed) / 2.0 * lSeconds;
  const double lTurn = std::remainder(lMotion.mCourse - mMotion.mCourse, 360.0);
  mPlace = moved(mPlace, lMetres, mMotion.mCourse + lTurn / 2.0);
  mMotion = lMotion;
  mTimeMs = nTimeMs;
  mMode = ESTIMATED;
  mWithoutFix += lSeconds;
  mDriven += lMetres;
  mSatellites = 0;
}

// Over midnight too; a step back is a gap that is too long.
double Reckoning::secondsTo(int64_t nTimeMs) const {
  const int64_t lElapsed = (nTimeMs - mTimeMs + tool::MS_PER_DAY) % tool::MS_PER_DAY;
  return lElapsed <= MAX_GAP_MS ? static_cast<double>(lElapsed) / 1000.0 : 0.0;
}

Dops Reckoning::dops() const {
  const double lGrowth = mWithoutFix * DOP_GROWTH;
  return {grown(mDops.mPosition, lGrowth), grown(mDops.mHorizontal, lGrowth), grown(mDops.mVertical, lGrowth),
          grown(mDops.mTime, lGrowth)};
}

void Reckoning::write(DRG_RMC* npRmc) const {
  npRmc->status = 'A';
  npRmc->mode = mMode;
  npRmc->latitude = toSentenceAngle(mPlace.mLatitude);
  npRmc->longitude = toSentenceAngle(mPlace.mLongitude);
  npRmc->speed = mMotion.mSpeed * KNOTS;
  npRmc->course = roundedCourse(wrapCourse(mMotion.mCourse));
  npRmc->day = static_cast<unsigned char>(mDate.day);
  npRmc->month = static_cast<unsigned char>(mDate.month);
  npRmc->year = static_cast<unsigned char>(mDate.year % 100);
  npRmc->variation = mVariation;
}

void Reckoning::write(DRG_VTG* npVtg) const {
  npVtg->mode = mMode;
  npVtg->courseTrue = roundedCourse(wrapCourse(mMotion.mCourse));
  npVtg->courseMagnetic = roundedCourse(wrapCourse(mMotion.mCourse - mVariation));
  npVtg->speedKnot = mMotion.mSpeed * KNOTS;
  npVtg->speedKmh = mMotion.mSpeed * KMH;
}

void Reckoning::write(DRG_GGA* npGga) const {
  npGga->quality = qualityOf(mMode);
  npGga->satellites = static_cast<unsigned char>(mSatellites);
  npGga->latitude = toSentenceAngle(mPlace.mLatitude);
  npGga->longitude = toSentenceAngle(mPlace.mLongitude);
  npGga->hdop = dops().mHorizontal;
  npGga->altitude = mAltitude;
  npGga->geoidSeparation = mGeoidSeparation;
  npGga->age = npGga->stationId = 0;
}

void Reckoning::write(DRG_PUBX* npPubx) const {
  const Dops lDops = dops();
  const bool lIsFix = mMode != ESTIMATED;
  npPubx->status = !lIsFix ? PUBX_DEAD_RECKONING : mHasHeight ? PUBX_3D : PUBX_2D;
  npPubx->messageId = 0;
  npPubx->latitude = toSentenceAngle(mPlace.mLatitude);
  npPubx->longitude = toSentenceAngle(mPlace.mLongitude);
  npPubx->altitude = mAltitude + mGeoidSeparation;
  npPubx->hacc = mHacc + ACCURACY_GROWTH * mDriven;
  npPubx->vacc = mVacc;
  npPubx->speed = mMotion.mSpeed * KMH;
  npPubx->course = roundedCourse(wrapCourse(mMotion.mCourse));
  npPubx->vvel = 0.0;
  npPubx->age = 0;
  npPubx->hdop = lDops.mHorizontal;
  npPubx->vdop = lDops.mVertical;
  npPubx->tdop = lDops.mTime;
  npPubx->satellites = static_cast<unsigned char>(mSatellites);
  npPubx->deadReckoning = lIsFix ? 0 : 1;
}

void Reckoning::write(DRG_GSA* npGsa) const {
  const Dops lDops = dops();
  npGsa->fixMode = FIX_2D;
  std::fill(std::begin(npGsa->number), std::end(npGsa->number), 0u);
  npGsa->pdop = lDops.mPosition;
  npGsa->hdop = lDops.mHorizontal;
  npGsa->vdop = lDops.mVertical;
}

}  // namespace drive
