#include "SentenceWriter.h"

#include <cmath>

#include "CivilTime.h"
#include "Format.h"
#include "Geometry.h"
#include "NfwNmeaCheckSumCalclator.h"

namespace drive {

namespace {

const std::string_view TALKERS[SYSTEM_NUM] = {"GP", "GL", "GA"};
const double VARIATION_WEST = 7.5;     // degrees, magnetic
const double GEOID_SEPARATION = 36.7;  // metres
const size_t BLOCKS = 4;               // satellites in a GSV sentence
const double KNOTS = 3600.0 / 1852.0;
const double KMH = 3.6;

// The talker of the only constellation, or the combined one.
std::string_view combinedTalker(const SkyModel& nSky) {
  std::string_view lTalker;
  for (int s = 0; s < SYSTEM_NUM; ++s) {
    if (nSky.has(static_cast<SatelliteSystem>(s))) lTalker = lTalker.empty() ? TALKERS[s] : "GN";
  }
  return lTalker;
}

}  // namespace

SentenceWriter::SentenceWriter(const Epoch& nEpoch, std::string* npText)
    : mEpoch(nEpoch),
      mHasFix(!nEpoch.mIsSkyHidden),
      mDops(mHasFix ? nEpoch.mSky.getDops() : DopSum().result()),
      mpText(npText),
      mTalker(combinedTalker(nEpoch.mSky)) {
  const tool::CivilTime lTime = tool::civilTime(nEpoch.mTimeMs);
  *fmt::format_to_n(mTime, sizeof(mTime) - 1, "{:02}{:02}{:02}.{:03}", lTime.mHour, lTime.mMinute, lTime.mSecond,
                    lTime.mMillisecond)
       .out = '\0';
}

template <class... Args>
void SentenceWriter::append(std::string_view nFormat, const Args&... nArgs) {
  fmt::vformat_to(std::back_inserter(*mpText), nFormat, fmt::make_format_args(nArgs...));
}

void SentenceWriter::begin(std::string_view nType) {
  mStart = mpText->size();
  append("${}{}", nType.size() == 3 ? mTalker : "", nType);
}

void SentenceWriter::end() {
  const unsigned int lSum = nfw::NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(
      reinterpret_cast<const unsigned char*>(mpText->data()) + mStart,
      static_cast<unsigned int>(mpText->size() - mStart));
  append("*{:02X}\r\n", lSum);
}

// ,ddmm.mmmmm,N,dddmm.mmmmm,E : whole units of the last digit, so that 59.999999 minutes carry into the degree
void SentenceWriter::appendPosition() {
  if (!mHasFix) return append(",,,,");
  const int64_t UNIT = 6000000;
  const VehicleState& lCar = mEpoch.mVehicle;
  const int64_t lLat = std::llround(std::fabs(lCar.mLatitude) * static_cast<double>(UNIT));
  const int64_t lLon = std::llround(std::fabs(lCar.mLongitude) * static_cast<double>(UNIT));
  append(",{:02}{:02}.{:05},{},{:03}{:02}.{:05},{}", lLat / UNIT, lLat % UNIT / 100000, lLat % 100000,
         lCar.mLatitude < 0.0 ? 'S' : 'N', lLon / UNIT, lLon % UNIT / 100000, lLon % 100000,
         lCar.mLongitude < 0.0 ? 'W' : 'E');
}

void SentenceWriter::appendDate() {
  const tool::CivilTime lTime = tool::civilTime(mEpoch.mTimeMs);
  append(",{:02}{:02}{:02}", lTime.mDay, lTime.mMonth, lTime.mYear % 100);
}

// $GNRMC,080000.000,A,3539.48000,N,13944.70000,E,12.345,060.00,310126,7.5,W,A*hh
// $GNRMC,080000.000,V,,,,,,,310126,,,N*hh
void SentenceWriter::writeRmc() {
  begin("RMC");
  append(",{},{}", std::string_view(mTime), mHasFix ? 'A' : 'V');
  appendPosition();
  if (mHasFix) {
    append(",{:.3f},{:.2f}", mEpoch.mVehicle.mSpeed * KNOTS, roundedCourse(mEpoch.mVehicle.mCourse));
    appendDate();
    append(",{:.1f},W,A", VARIATION_WEST);
  } else {
    append(",,");
    appendDate();
    append(",,,N");
  }
  end();
}

// $GNVTG,060.00,T,067.50,M,12.345,N,22.863,K,A*hh
// $GNVTG,,,,,,,,,N*hh
void SentenceWriter::writeVtg() {
  begin("VTG");
  if (mHasFix) {
    append(",{:.2f},T,{:.2f},M,{:.3f},N,{:.3f},K,A", roundedCourse(mEpoch.mVehicle.mCourse),
           roundedCourse(std::fmod(mEpoch.mVehicle.mCourse + VARIATION_WEST, 360.0)), mEpoch.mVehicle.mSpeed * KNOTS,
           mEpoch.mVehicle.mSpeed * KMH);
  } else {
    append(",,,,,,,,,N");
  }
  end();
}

// $GNGGA,080000.000,3539.48000,N,13944.70000,E,1,21,0.61,42.0,M,36.7,M,,*hh
// $GNGGA,080000.000,,,,,0,00,99.99,,,,,,*hh
void SentenceWriter::writeGga() {
  begin("GGA");
  append(",{}", std::string_view(mTime));
  appendPosition();
  append(",{},{:02},{:.2f}", mHasFix ? 1 : 0, mHasFix ? mEpoch.mSky.usedCount() : 0, mDops.mHorizontal);
  if (mHasFix) {
    append(",{:.1f},M,{:.1f},M,,", mEpoch.mVehicle.mAltitude, GEOID_SEPARATION);
  } else {
    append(",,,,,,");
  }
  end();
}

void SentenceWriter::writeGsa() {
  for (int s = 0; s < SYSTEM_NUM; ++s) {
    if (mEpoch.mSky.has(static_cast<SatelliteSystem>(s))) writeGsa(static_cast<SatelliteSystem>(s));
  }
}

// $GNGSA,A,3,01,05,...,,,1.10,0.61,0.92*hh
// $GNGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99*hh
void SentenceWriter::writeGsa(SatelliteSystem nSystem) {
  begin("GSA");
  append(",A,{}", mHasFix ? 3 : 1);
  unsigned int lPlaces = SkyModel::MAX_USED;
  for (const Satellite& lSatellite : mEpoch.mSky.inView(nSystem)) {
    if (!mHasFix || !lSatellite.mUsed) continue;
    append(",{:02}", lSatellite.mNumber);
    --lPlaces;
  }
  mpText->append(lPlaces, ',');
  append(",{:.2f},{:.2f},{:.2f}", mDops.mPosition, mDops.mHorizontal, mDops.mVertical);
  end();
}

void SentenceWriter::writeGsv() {
  for (int s = 0; s < SYSTEM_NUM; ++s) {
    if (mEpoch.mSky.has(static_cast<SatelliteSystem>(s))) writeGsv(static_cast<SatelliteSystem>(s));
  }
}

// $GPGSV,3,1,11,03,41,050,46,07,60,317,49,08,34,315,45,11,35,148,*hh : each constellation has its own talker
void SentenceWriter::writeGsv(SatelliteSystem nSystem) {
  const std::vector<Satellite>& lSatellites = mEpoch.mSky.inView(nSystem);
  const size_t lMessages = lSatellites.empty() ? 1 : (lSatellites.size() + BLOCKS - 1) / BLOCKS;
  for (size_t m = 0; m < lMessages; ++m) {
    begin(std::string(TALKERS[nSystem]) + "GSV");
    append(",{},{},{:02}", lMessages, m + 1, lSatellites.size());
    for (size_t i = m * BLOCKS; i < lSatellites.size() && i < (m + 1) * BLOCKS; ++i) writeSatellite(lSatellites[i]);
    end();
  }
}

void SentenceWriter::writeSatellite(const Satellite& nSatellite) {
  append(",{:02},{:02},{:03},", nSatellite.mNumber, nSatellite.mElevation, nSatellite.mAzimuth);
  if (mHasFix && nSatellite.mSnr > 0) append("{:02}", nSatellite.mSnr);
}

// $GNGLL,3539.48000,N,13944.70000,E,080000.000,A,A*hh
// $GNGLL,,,,,080000.000,V,N*hh
void SentenceWriter::writeGll() {
  begin("GLL");
  appendPosition();
  append(",{},{}", std::string_view(mTime), mHasFix ? "A,A" : "V,N");
  end();
}

// $GNZDA,080000.000,31,01,2026,00,00*hh
void SentenceWriter::writeZda() {
  const tool::CivilTime lTime = tool::civilTime(mEpoch.mTimeMs);
  begin("ZDA");
  append(",{},{:02},{:02},{:04},00,00", std::string_view(mTime), lTime.mDay, lTime.mMonth, lTime.mYear);
  end();
}

// $PUBX,00,080000.000,3539.48000,N,13944.70000,E,78.700,G3,1.5,2.3,22.863,060.00,0.000,,0.61,0.92,0.55,21,0,0*hh
// $PUBX,00,080000.000,,,,,,NF,,,,,,,99.99,99.99,99.99,0,0,0*hh
void SentenceWriter::writePubx() {
  const VehicleState& lCar = mEpoch.mVehicle;
  begin("PUBX,00");
  append(",{}", std::string_view(mTime));
  appendPosition();
  if (mHasFix) {
    append(",{:.3f},G3,{:.1f},{:.1f},{:.3f},{:.2f},{:.3f},", lCar.mAltitude + GEOID_SEPARATION, 2.5 * mDops.mHorizontal,
           2.5 * mDops.mVertical, lCar.mSpeed * KMH, roundedCourse(lCar.mCourse), 0.0 - lCar.mClimb);
  } else {
    append(",,NF,,,,,,");
  }
  append(",{:.2f},{:.2f},{:.2f},{},0,0", mDops.mHorizontal, mDops.mVertical, mDops.mTime,
         mHasFix ? mEpoch.mSky.usedCount() : 0);
  end();
}

}  // namespace drive
