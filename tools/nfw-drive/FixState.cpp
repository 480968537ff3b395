#include "FixState.h"

#include <fmt/format.h>

#include "JsonRecord.h"
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

void FixState::take(const nfw::GsvSentence& nRecord) {
  mInView[static_cast<size_t>(nRecord.satelliteType)] = nRecord.satelliteView;
}

void FixState::takeTime(std::string_view nSentence) {
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
  if (mGga.quality == nfw::QUALITY_INVALID && !mRmc.status) return "no position";
  if (hasPosition(mGga.latitude)) return positionText(mGga.latitude, mGga.longitude);
  if (hasPosition(mRmc.latitude)) return positionText(mRmc.latitude, mRmc.longitude);
  return "no position";
}

std::string FixState::speed() const {
  const double lKmh = mRmc.status ? mRmc.speed * 1.852 : mVtg.speedKmh;
  return fmt::format("{:.1f} km/h", lKmh);
}

std::string FixState::course() const {
  return fmt::format("{:.1f} deg", mRmc.status ? mRmc.direction : mVtg.directionForTrueNorth);
}

std::string FixState::fix() const { return fmt::format("{}, {}", FIXES[mGsa.mode], QUALITIES[mGga.quality]); }

std::string FixState::satellites() const {
  std::string lText;
  for (size_t i = 0; i < SYSTEM_TYPES; ++i) {
    if (mInView[i] == 0) continue;
    if (!lText.empty()) lText += ", ";
    lText += fmt::format("{} {}", tool::systemName(static_cast<nfw::SatelliteType>(i)), mInView[i]);
  }
  return lText.empty() ? "none" : lText;
}

}  // namespace drive
