#pragma once

#include "ColourScale.h"
#include "Svg.h"
#include "TrackThinner.h"

namespace logtool {

/// Draws the track on a grid of latitude and longitude, with scale and north.
class MapPanel {
 public:
  /// Both are not owned and outlive the panel.
  MapPanel(const TrackThinner& nTrack, const ColourScale& nColours) : mTrack(nTrack), mColours(nColours) {}

  void draw(const Box& nBox, Svg* npSvg);

 private:
  void fit(const Box& nBox);
  double xOf(double nEast) const { return mCentreX + (nEast - mMiddle.mEast) * mPixelsPerMetre; }
  double yOf(double nNorth) const { return mCentreY - (nNorth - mMiddle.mNorth) * mPixelsPerMetre; }
  void drawGrid(const Box& nBox, Svg* npSvg) const;
  void drawTrack(Svg* npSvg) const;
  void drawEnds(Svg* npSvg) const;
  void drawName(double nX, double nY, const std::string& nText, Svg* npSvg) const;
  void drawScale(const Box& nBox, Svg* npSvg) const;
  static void drawNorth(const Box& nBox, Svg* npSvg);

  const TrackThinner& mTrack;
  const ColourScale& mColours;
  GroundPoint mMiddle = {};
  double mCentreX = 0.0, mCentreY = 0.0;
  double mPixelsPerMetre = 1.0;
};

}  // namespace logtool
