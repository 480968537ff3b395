#pragma once

#include <string>
#include <vector>

#include "ColourScale.h"
#include "Svg.h"
#include "TrackThinner.h"

namespace logtool {

/// A track of the map. None of it is owned.
struct MapTrack {
  const TrackThinner* mpTrack;
  std::string mName;
  const char* mpColour;  ///< beside it, where there are several
};

/// Draws the tracks on a grid of latitude and longitude, with scale and north.
class MapPanel {
 public:
  /// None is owned; they outlive the panel. @param nTracks one at least
  MapPanel(const Ground& nGround, const std::vector<MapTrack>& nTracks, const ColourScale& nColours)
      : mGround(nGround), mTracks(nTracks), mColours(nColours) {}

  void draw(const Box& nBox, Svg* npSvg);

 private:
  void fit(const Box& nBox);
  double xOf(double nEast) const { return mCentreX + (nEast - mMiddle.mEast) * mPixelsPerMetre; }
  double yOf(double nNorth) const { return mCentreY - (nNorth - mMiddle.mNorth) * mPixelsPerMetre; }
  void drawGrid(const Box& nBox, Svg* npSvg) const;
  void drawTrack(const MapTrack& nTrack, Svg* npSvg) const;
  void drawSide(const MapTrack& nTrack, Svg* npSvg) const;
  void drawEnds(const MapTrack& nTrack, Svg* npSvg) const;
  void drawName(double nX, double nY, const std::string& nText, Svg* npSvg) const;
  void drawScale(const Box& nBox, Svg* npSvg) const;
  static void drawNorth(const Box& nBox, Svg* npSvg);

  const Ground& mGround;
  const std::vector<MapTrack>& mTracks;
  const ColourScale& mColours;
  Box mBox = {};
  GroundPoint mMiddle = {};
  double mCentreX = 0.0, mCentreY = 0.0;
  double mPixelsPerMetre = 1.0;
};

}  // namespace logtool
