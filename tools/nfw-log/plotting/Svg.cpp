#include "Svg.h"

#include <algorithm>
#include <cmath>

#include "XmlText.h"

namespace logtool {

namespace {

template <class... Args>
void append(std::string* npText, fmt::format_string<Args...> nFormat, Args&&... nArgs) {
  fmt::format_to(std::back_inserter(*npText), nFormat, std::forward<Args>(nArgs)...);
}

}  // namespace

void Svg::line(double nX1, double nY1, double nX2, double nY2, std::string_view nClass) {
  append(&mText, "<line class=\"{}\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", nClass, nX1, nY1,
         nX2, nY2);
}

void Svg::rectangle(const Box& nBox, std::string_view nClass, std::string_view nFill) {
  append(&mText, "<rect class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\"", nClass, nBox.mX,
         nBox.mY, nBox.mWidth, nBox.mHeight);
  if (!nFill.empty()) append(&mText, " fill=\"{}\"", nFill);
  mText += "/>\n";
}

void Svg::text(double nX, double nY, Anchor nAnchor, std::string_view nClass, std::string_view nText) {
  static const char* const ANCHORS[] = {"start", "middle", "end"};
  append(&mText, "<text class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" text-anchor=\"{}\">{}</text>\n", nClass, nX, nY,
         ANCHORS[nAnchor], xmlText(nText));
}

void Svg::path(std::string_view nPath, std::string_view nClass, std::string_view nStroke, std::string_view nFill) {
  append(&mText, "<path class=\"{}\" d=\"{}\"", nClass, nPath);
  if (!nStroke.empty()) append(&mText, " stroke=\"{}\"", nStroke);
  if (!nFill.empty()) append(&mText, " fill=\"{}\"", nFill);
  mText += "/>\n";
}

Ticks roundTicks(double nLow, double nHigh, unsigned int nMost) {
  Ticks lTicks;
  const double lSpan = std::max(nHigh - nLow, 1e-9);
  const int lPower = static_cast<int>(std::floor(std::log10(lSpan / nMost)));
  for (const double lFactor : {1.0, 2.0, 5.0, 10.0}) {
    lTicks.mStep = lFactor * std::pow(10.0, lPower);
    if (lSpan / lTicks.mStep <= nMost) break;
  }
  lTicks.mDecimals = std::max(0, static_cast<int>(std::ceil(-std::log10(lTicks.mStep) - 1e-9)));
  for (double i = std::ceil(nLow / lTicks.mStep - 1e-6); i * lTicks.mStep <= nHigh + lTicks.mStep * 1e-6; i += 1.0) {
    lTicks.mValues.push_back(i * lTicks.mStep + 0.0);  // no -0
  }
  return lTicks;
}

}  // namespace logtool
