#pragma once

#include "Svg.h"
#include "TimeBins.h"
#include "TrackPoint.h"
#include "TrackThinner.h"

namespace logtool {

/// The colours of the track and their legend.
class ColourScale {
 public:
  /// @param nByFix by the kind of fix, else by speed
  ColourScale(bool nByFix, const Range& nSpeed);

  /// An index of a colour, of -1 for "not told".
  int classOf(const TrackPlace& nPlace) const;
  static const char* colourOf(int nClass, bool nByFix);
  const char* colourOf(int nClass) const { return colourOf(nClass, mByFix); }

  /// @param nHasReckoned whether the track has dashed stretches
  void drawLegend(const Box& nBox, bool nHasReckoned, Svg* npSvg) const;

 private:
  void drawSpeeds(const Box& nBox, Svg* npSvg) const;
  void drawFixes(const Box& nBox, Svg* npSvg) const;

  const bool mByFix;
  double mMaxSpeed = 1.0;
};

}  // namespace logtool
