#include "MapPanel.h"

#include <algorithm>
#include <cmath>

#include "TimeBins.h"

namespace logtool {

namespace {

const double MARGIN = 34.0;       // pixels around the track
const double LEAST_SPAN = 20.0;   // metres: a vehicle that stands shows no more than the receiver's noise
const double LEAST_PIXELS = 0.6;  // between two points that are drawn
const double MOST_SCALE = 130.0;  // pixels of the scale's bar

std::string degreesText(double nDegrees, int nDecimals, char nPositive, char nNegative) {
  const double lRounded = std::fabs(nDegrees) < std::pow(10.0, -nDecimals - 3) ? 0.0 : nDegrees;
  return fmt::format("{:.{}f}\xC2\xB0 {}", std::fabs(lRounded), nDecimals, lRounded < 0.0 ? nNegative : nPositive);
}

std::string lengthText(double nMetres) {
  return nMetres >= 1000.0 ? fmt::format("{:g} km", nMetres / 1000.0) : fmt::format("{:g} m", nMetres);
}

}  // namespace

void MapPanel::draw(const Box& nBox, Svg* npSvg) {
  fit(nBox);
  npSvg->rectangle(nBox, "panel");
  drawGrid(nBox, npSvg);
  for (const MapTrack& lTrack : mTracks) {
    if (mTracks.size() > 1) drawSide(lTrack, npSvg);
    drawTrack(lTrack, npSvg);
  }
  for (const MapTrack& lTrack : mTracks) drawEnds(lTrack, npSvg);
  drawScale(nBox, npSvg);
  drawNorth(nBox, npSvg);
}

void MapPanel::fit(const Box& nBox) {
  Range lEast, lNorth;
  for (const MapTrack& lTrack : mTracks) {
    for (const TrackPlace& lPlace : lTrack.mpTrack->getPlaces()) {
      lEast.add(lPlace.mPlace.mEast);
      lNorth.add(lPlace.mPlace.mNorth);
    }
  }
  mMiddle = {(lEast.mLow + lEast.mHigh) / 2.0, (lNorth.mLow + lNorth.mHigh) / 2.0};
  mBox = nBox;
  mCentreX = nBox.mX + nBox.mWidth / 2.0;
  mCentreY = nBox.mY + nBox.mHeight / 2.0;
  const double lWide = (nBox.mWidth - 2.0 * MARGIN) / std::max(lEast.mHigh - lEast.mLow, LEAST_SPAN);
  const double lHigh = (nBox.mHeight - 2.0 * MARGIN) / std::max(lNorth.mHigh - lNorth.mLow, LEAST_SPAN);
  mPixelsPerMetre = std::min(lWide, lHigh);
}

void MapPanel::drawGrid(const Box& nBox, Svg* npSvg) const {
  const double lHalfWide = nBox.mWidth / 2.0 / mPixelsPerMetre, lHalfHigh = nBox.mHeight / 2.0 / mPixelsPerMetre;
  const double lWest = mGround.longitudeOf(mMiddle.mEast - lHalfWide);
  const double lEast = mGround.longitudeOf(mMiddle.mEast + lHalfWide);
  const double lSouth = mGround.latitudeOf(mMiddle.mNorth - lHalfHigh);
  const double lNorth = mGround.latitudeOf(mMiddle.mNorth + lHalfHigh);
  const Ticks lMeridians = roundTicks(lWest, lEast, 6);
  for (const double lLongitude : lMeridians.mValues) {
    const double lX = nBox.mX + nBox.mWidth * (lLongitude - lWest) / (lEast - lWest);
    npSvg->line(lX, nBox.mY, lX, nBox.bottom(), "grid");
    npSvg->text(lX, nBox.bottom() + 16.0, Svg::MIDDLE, "label",
                degreesText(std::remainder(lLongitude, 360.0), lMeridians.mDecimals, 'E', 'W'));
  }
  const Ticks lParallels = roundTicks(lSouth, lNorth, 6);
  for (const double lLatitude : lParallels.mValues) {
    const double lY = nBox.bottom() - nBox.mHeight * (lLatitude - lSouth) / (lNorth - lSouth);
    npSvg->line(nBox.mX, lY, nBox.right(), lY, "grid");
    npSvg->text(nBox.mX - 6.0, lY + 4.0, Svg::END, "label", degreesText(lLatitude, lParallels.mDecimals, 'N', 'S'));
  }
}

// One path for each run of a colour; runs join at the point where the colour changes.
void MapPanel::drawTrack(const MapTrack& nTrack, Svg* npSvg) const {
  std::string lPath;
  int lClass = 0;
  bool lIsReckoned = false;
  double lX = 0.0, lY = 0.0;
  const auto lEndPath = [&] {
    if (lPath.find('L') != std::string::npos) {
      npSvg->path(lPath, lIsReckoned ? "track reckoned" : "track", mColours.colourOf(lClass));
    }
    lPath.clear();
  };
  const std::vector<TrackPlace>& lPlaces = nTrack.mpTrack->getPlaces();
  for (size_t i = 0; i < lPlaces.size(); ++i) {
    const TrackPlace& lPlace = lPlaces[i];
    const double lNewX = xOf(lPlace.mPlace.mEast), lNewY = yOf(lPlace.mPlace.mNorth);
    const bool lIsNewReckoned = lPlace.mFix == FIX_ESTIMATED;
    const bool lIsBreak = i == 0 || lPlace.mIsBreak;
    const bool lIsChange = !lIsBreak && (mColours.classOf(lPlace) != lClass || lIsNewReckoned != lIsReckoned);
    const bool lIsNear = std::hypot(lNewX - lX, lNewY - lY) < LEAST_PIXELS;
    if (lIsBreak || lIsChange)
      lEndPath();
    else if (lIsNear && i + 1 < lPlaces.size())
      continue;
    if (lIsChange) lPath = fmt::format("M{:.1f} {:.1f}", lX, lY);
    lPath += fmt::format("{}{:.1f} {:.1f}", lPath.empty() ? 'M' : 'L', lNewX, lNewY);
    lX = lNewX;
    lY = lNewY;
    lClass = mColours.classOf(lPlace);
    lIsReckoned = lIsNewReckoned;
  }
  lEndPath();
}

// A margin in the track's own colour: that of the track itself is its speed.
void MapPanel::drawSide(const MapTrack& nTrack, Svg* npSvg) const {
  std::string lPath;
  double lX = 0.0, lY = 0.0;
  for (const TrackPlace& lPlace : nTrack.mpTrack->getPlaces()) {
    const double lNewX = xOf(lPlace.mPlace.mEast), lNewY = yOf(lPlace.mPlace.mNorth);
    const bool lIsBreak = lPath.empty() || lPlace.mIsBreak;
    if (!lIsBreak && std::hypot(lNewX - lX, lNewY - lY) < LEAST_PIXELS) continue;
    lPath += fmt::format("{}{:.1f} {:.1f}", lIsBreak ? 'M' : 'L', lNewX, lNewY);
    lX = lNewX;
    lY = lNewY;
  }
  npSvg->path(lPath, "side", nTrack.mpColour);
}

void MapPanel::drawEnds(const MapTrack& nTrack, Svg* npSvg) const {
  const GroundPoint& lFirst = nTrack.mpTrack->getPlaces().front().mPlace;
  const GroundPoint& lLast = nTrack.mpTrack->getPlaces().back().mPlace;
  const double lX = xOf(lFirst.mEast), lY = yOf(lFirst.mNorth);
  const double lEndX = xOf(lLast.mEast), lEndY = yOf(lLast.mNorth);
  npSvg->raw(fmt::format("<circle class=\"mark\" cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"5\"/>\n", lX, lY));
  npSvg->rectangle({lEndX - 5.0, lEndY - 5.0, 10.0, 10.0}, "mark");
  const bool lAreNear = std::fabs(lX - lEndX) < 60.0 && std::fabs(lY - lEndY) < 18.0;
  const std::string lName = mTracks.size() > 1 ? nTrack.mName + ": " : "";
  // Tracks of one drive begin and end together: there the first has its name.
  const std::vector<TrackPlace>& lNamed = mTracks.front().mpTrack->getPlaces();
  const bool lIsFirst = &nTrack == &mTracks.front();
  const auto lIsAlone = [&](const GroundPoint& n, double nX, double nY) {
    return lIsFirst || std::hypot(xOf(n.mEast) - nX, yOf(n.mNorth) - nY) > 10.0;
  };
  if (lIsAlone(lNamed.front().mPlace, lX, lY)) drawName(lX, lY, lName + (lAreNear ? "start, end" : "start"), npSvg);
  if (!lAreNear && lIsAlone(lNamed.back().mPlace, lEndX, lEndY)) drawName(lEndX, lEndY, lName + "end", npSvg);
}

// On the side of the mark where it hides least of the track.
void MapPanel::drawName(double nX, double nY, const std::string& nText, Svg* npSvg) const {
  const double lWidth = 8.0 * static_cast<double>(nText.size()), lHeight = 16.0;
  const Box lPlaces[] = {{nX + 8.0, nY - 20.0, lWidth, lHeight},
                         {nX + 8.0, nY + 6.0, lWidth, lHeight},
                         {nX - 8.0 - lWidth, nY - 20.0, lWidth, lHeight},
                         {nX - 8.0 - lWidth, nY + 6.0, lWidth, lHeight}};
  const auto lHidden = [this](const Box& nPlace) {
    const std::vector<TrackPlace>& lTrack = mTracks.front().mpTrack->getPlaces();
    const bool lIsOutside = nPlace.right() > mBox.right() || nPlace.mX < mBox.mX;
    return (lIsOutside ? std::ptrdiff_t{TrackThinner::MAX_POINTS} : 0) +
           std::count_if(lTrack.begin(), lTrack.end(), [&](const TrackPlace& nPoint) {
             const double lX = xOf(nPoint.mPlace.mEast), lY = yOf(nPoint.mPlace.mNorth);
             return lX > nPlace.mX && lX < nPlace.right() && lY > nPlace.mY && lY < nPlace.bottom();
           });
  };
  const Box* const lpBest =
      std::min_element(std::begin(lPlaces), std::end(lPlaces),
                       [&](const Box& nLeft, const Box& nRight) { return lHidden(nLeft) < lHidden(nRight); });
  npSvg->text(lpBest->mX + lWidth / 2.0, lpBest->mY + 12.0, Svg::MIDDLE, "halo", nText);
}

void MapPanel::drawScale(const Box& nBox, Svg* npSvg) const {
  const Ticks lTicks = roundTicks(0.0, MOST_SCALE / mPixelsPerMetre, 1);
  const double lMetres = lTicks.mStep * mPixelsPerMetre <= MOST_SCALE ? lTicks.mStep : lTicks.mStep / 2.0;
  const double lPixels = lMetres * mPixelsPerMetre;
  const double lX = nBox.mX + 14.0, lY = nBox.bottom() - 14.0;
  npSvg->rectangle({lX - 8.0, lY - 24.0, lPixels + 16.0, 32.0}, "back");
  npSvg->path(fmt::format("M{:.1f} {:.1f}v6h{:.1f}v-6", lX, lY - 6.0, lPixels), "bar");
  npSvg->text(lX + lPixels / 2.0, lY - 9.0, Svg::MIDDLE, "label", lengthText(lMetres));
}

void MapPanel::drawNorth(const Box& nBox, Svg* npSvg) {
  const double lX = nBox.right() - 22.0, lY = nBox.mY + 16.0;
  npSvg->rectangle({lX - 14.0, lY - 10.0, 28.0, 52.0}, "back");
  npSvg->path(fmt::format("M{:.1f} {:.1f}l8 22l-8 -5l-8 5z", lX, lY - 4.0), "north");
  npSvg->text(lX, lY + 34.0, Svg::MIDDLE, "strong", "N");
}

}  // namespace logtool
