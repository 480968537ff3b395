#include "DriveStats.h"

#include <utility>

#include "Format.h"
#include "GroundDistance.h"
#include "Messages.h"
#include "WallClock.h"

namespace logtool {

namespace {

const double MS_PER_KMH = 3600.0;  // milliseconds that a metre takes at 1 km/h

// By the receiver's time where both have it: a recording may have been made slower or faster than that.
int64_t timeBetween(const TrackPoint& nFirst, const TrackPoint& nSecond) {
  if (nFirst.mUtcMs >= 0 && nSecond.mUtcMs >= 0) return nSecond.mUtcMs - nFirst.mUtcMs;
  return static_cast<int64_t>(nSecond.mElapsedMs) - static_cast<int64_t>(nFirst.mElapsedMs);
}

std::string momentText(const DriveStats::Event& nEvent) {
  return nEvent.mUtcMs >= 0 ? timeText(nEvent.mUtcMs) + " UTC" : durationText(nEvent.mElapsedMs);
}

std::string timeSpan(int64_t nMs) { return durationText(static_cast<uint64_t>(nMs)); }

std::string fixText(const DriveStats& nStats) {
  std::string lText = fmt::format("{:.1f} % of {}", nStats.fixShare(), countText(nStats.getEpochs(), "epoch"));
  for (int i = FIX_NONE; i <= FIX_ESTIMATED; ++i) {
    const uint64_t lCount = nStats.countOf(static_cast<Fix>(i));
    if (lCount > 0) lText += fmt::format(", {} {}", fixName(static_cast<Fix>(i)), lCount);
  }
  return lText;
}

void addEvent(const char* npKey, const char* npLength, const DriveStats::Event& nEvent, tool::JsonObject& nObject) {
  if (!(nEvent.mLength > 0.0)) return nObject.null(npKey);
  tool::JsonObject lEvent(nObject.key(npKey));
  lEvent.real(npLength, nEvent.mLength);
  lEvent.number("elapsed_ms", nEvent.mElapsedMs);
  if (nEvent.mUtcMs >= 0) lEvent.text("utc", utcText(nEvent.mUtcMs));
}

void addFixes(const DriveStats& nStats, tool::JsonObject& nObject) {
  tool::JsonObject lFixes(nObject.key("fix"));
  for (int i = FIX_NONE; i <= FIX_ESTIMATED; ++i) {
    lFixes.number(fixName(static_cast<Fix>(i)), nStats.countOf(static_cast<Fix>(i)));
  }
}

void addStand(const Stand* npStand, tool::JsonObject& nObject) {
  if (npStand == nullptr) return nObject.null("longest_stand");
  tool::JsonObject lStand(nObject.key("longest_stand"));
  const Stand::Scatter lScatter = npStand->scatter();
  lStand.number("duration_ms", static_cast<uint64_t>(npStand->getDurationMs()));
  lStand.number("positions", npStand->getPositions());
  lStand.real("cep50_m", lScatter.mCep50);
  lStand.real("cep95_m", lScatter.mCep95);
}

}  // namespace

void DriveStats::add(const TrackPoint& nPoint) {
  ++mPositions;
  ++mFixes[nPoint.mFix];
  if (!(nPoint.mSpeedKmh <= mMaxSpeed) && !std::isnan(nPoint.mSpeedKmh)) mMaxSpeed = nPoint.mSpeedKmh;
  if (mLast.hasPosition()) addStep(nPoint);
  addStand(nPoint);
  mLast = nPoint;
}

void DriveStats::addStep(const TrackPoint& nPoint) {
  const int64_t lMs = timeBetween(mLast, nPoint);
  if (lMs >= mGapMs) {
    ++mGaps;
    mGapSum += lMs;
    const double lLength = static_cast<double>(lMs);
    if (lLength > mLongestGap.mLength) mLongestGap = {lLength, nPoint.mElapsedMs, nPoint.mUtcMs};
  }
  if (nPoint.mIsBreak || lMs < 0) return;
  const double lWay = tool::groundDistance(mLast.mLatitude, mLast.mLongitude, nPoint.mLatitude, nPoint.mLongitude);
  double lSpeed = std::fmax(mLast.mSpeedKmh, nPoint.mSpeedKmh);
  const double lTold = std::isnan(lSpeed) ? 0.0 : lSpeed * static_cast<double>(lMs) / MS_PER_KMH;
  if (lWay - lTold > mLargestJump.mLength) mLargestJump = {lWay - lTold, nPoint.mElapsedMs, nPoint.mUtcMs};
  if (std::isnan(lSpeed)) lSpeed = lMs > 0 ? lWay * MS_PER_KMH / static_cast<double>(lMs) : 0.0;
  const bool lMoves = lSpeed >= LEAST_SPEED_KMH;
  if (lMoves) mDistance += lWay;
  (lMoves ? mMoving : mStanding) += lMs;
}

void DriveStats::addStand(const TrackPoint& nPoint) {
  if (!mStand.holds(nPoint)) {
    if (mStand.getDurationMs() > mLongest.getDurationMs()) std::swap(mStand, mLongest);
    mStand = {};
  }
  if (mStand.holds(nPoint)) mStand.add(nPoint);
}

const Stand* DriveStats::getStand() const {
  const Stand& lStand = mStand.getDurationMs() > mLongest.getDurationMs() ? mStand : mLongest;
  return lStand.getPositions() >= Stand::LEAST_POSITIONS ? &lStand : nullptr;
}

double DriveStats::fixShare() const {
  if (getEpochs() == 0) return NAN;
  return 100.0 * static_cast<double>(mPositions - mFixes[FIX_ESTIMATED]) / static_cast<double>(getEpochs());
}

std::string statsText(const DriveStats& nStats, const std::string& nMargin) {
  std::string lText =
      fmt::format("{}, {:.3f} km in {} of motion, {} of standing", countText(nStats.getPositions(), "position"),
                  nStats.getDistanceM() / 1000.0, timeSpan(nStats.getMovingMs()), timeSpan(nStats.getStandingMs()));
  if (!std::isnan(nStats.getMaxSpeedKmh())) lText += fmt::format(", at most {:.1f} km/h", nStats.getMaxSpeedKmh());
  lText += fmt::format("\n{}Fix {}\n{}{}", nMargin, fixText(nStats), nMargin, countText(nStats.getGaps(), "gap"));
  if (nStats.getGaps() > 0) {
    const DriveStats::Event& lGap = nStats.getLongestGap();
    lText += fmt::format(" of {}, the longest of {} up to {}", timeSpan(nStats.getGapMs()),
                         timeSpan(static_cast<int64_t>(lGap.mLength)), momentText(lGap));
  }
  const DriveStats::Event& lJump = nStats.getLargestJump();
  if (lJump.mLength > 0.0)
    lText += fmt::format("\n{}Largest jump {:.1f} m at {}", nMargin, lJump.mLength, momentText(lJump));
  if (const Stand* const lpStand = nStats.getStand()) {
    const Stand::Scatter lScatter = lpStand->scatter();
    lText += fmt::format("\n{}Longest stand {}, {}: CEP50 {:.2f} m, CEP95 {:.2f} m", nMargin,
                         timeSpan(lpStand->getDurationMs()), countText(lpStand->getPositions(), "position"),
                         lScatter.mCep50, lScatter.mCep95);
  }
  return lText;
}

void addStats(const DriveStats& nStats, tool::JsonObject& nObject) {
  nObject.number("positions", nStats.getPositions());
  nObject.number("epochs", nStats.getEpochs());
  nObject.real("distance_m", nStats.getDistanceM());
  nObject.number("moving_ms", static_cast<uint64_t>(nStats.getMovingMs()));
  nObject.number("standing_ms", static_cast<uint64_t>(nStats.getStandingMs()));
  nObject.real("max_speed_kmh", nStats.getMaxSpeedKmh());
  nObject.real("fix_percent", nStats.fixShare());
  addFixes(nStats, nObject);
  nObject.number("gap_count", nStats.getGaps());
  nObject.number("gap_ms", static_cast<uint64_t>(nStats.getGapMs()));
  addEvent("longest_gap", "length_ms", nStats.getLongestGap(), nObject);
  addEvent("largest_jump", "length_m", nStats.getLargestJump(), nObject);
  addStand(nStats.getStand(), nObject);
}

}  // namespace logtool
