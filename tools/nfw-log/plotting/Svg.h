#pragma once

#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "Format.h"

namespace logtool {

/// A rectangle of the picture, pixels from its upper left corner.
struct Box {
  double mX, mY, mWidth, mHeight;
  double right() const { return mX + mWidth; }
  double bottom() const { return mY + mHeight; }
};

/// Collects the elements of an SVG picture.
class Svg {
 public:
  enum Anchor { START, MIDDLE, END };

  void line(double nX1, double nY1, double nX2, double nY2, std::string_view nClass);
  void rectangle(const Box& nBox, std::string_view nClass, std::string_view nFill = {});
  void text(double nX, double nY, Anchor nAnchor, std::string_view nClass, std::string_view nText);
  /// @param nPath the "d" of a path
  void path(std::string_view nPath, std::string_view nClass, std::string_view nStroke = {},
            std::string_view nFill = {});
  /// Any element as it stands.
  void raw(std::string_view nText) { mText += nText; }

  const std::string& getText() const { return mText; }

 private:
  std::string mText;
};

/// Round numbers between two limits: 1, 2 or 5 times a power of ten apart.
struct Ticks {
  double mStep = 1.0;
  int mDecimals = 0;  ///< that a label needs
  std::vector<double> mValues;
};
Ticks roundTicks(double nLow, double nHigh, unsigned int nMost);

}  // namespace logtool
