#include "PlotPage.h"

#include <fmt/format.h>

#include <algorithm>

#include "ColourScale.h"
#include "MapPanel.h"
#include "Svg.h"
#include "TimePanels.h"
#include "WallClock.h"

namespace logtool {

namespace {

const double WIDTH = 1040.0;
const Box MAP = {92.0, 70.0, 800.0, 460.0};
const double PANELS_Y = MAP.mY + MAP.mHeight + 30.0;
const double HEIGHT = PANELS_Y + TimePanels::HEIGHT + 12.0;

const char* const STYLE =
    "text{font-family:'DejaVu Sans',Helvetica,Arial,sans-serif;font-size:12px;fill:#303030}"
    ".title{font-size:18px;font-weight:bold;fill:#101010}"
    ".strong{font-weight:bold;fill:#101010}"
    ".halo{font-weight:bold;fill:#101010;paint-order:stroke;stroke:#fff;stroke-width:4px;stroke-linejoin:round}"
    ".page{fill:#fff}"
    ".panel{fill:#fcfcfc;stroke:#909090}"
    ".grid{stroke:#e2e2e2}"
    ".axis{stroke:#606060}"
    ".back{fill:#fff;fill-opacity:.85}"
    ".bar{fill:none;stroke:#202020;stroke-width:2}"
    ".north{fill:#202020}"
    ".mark{fill:#fff;stroke:#101010;stroke-width:2.5}"
    ".shade{fill:#b5306b;fill-opacity:.13}"
    ".track{fill:none;stroke-width:3.2;stroke-linejoin:round;stroke-linecap:round}"
    ".reckoned{stroke-dasharray:7 6;stroke-linecap:butt}"
    ".band{fill:#1f5fa8;fill-opacity:.2}"
    ".curve{fill:none;stroke:#1f5fa8;stroke-width:1.4;stroke-linejoin:round;stroke-linecap:round}";

std::string subtitle(const PlotData& nData) {
  const std::vector<TimeBin>& lBins = nData.mBins.getBins();
  const int64_t lFrom = lBins.front().mFrom, lTo = lBins.back().mTo;
  std::string lText;
  if (nData.mBins.isUtc()) lText = timeText(lFrom).substr(0, 19) + " to " + timeText(lTo).substr(0, 19) + " UTC, ";
  const std::string lDuration = durationText(static_cast<uint64_t>(lTo - lFrom));
  return lText + fmt::format("{}, {:.2f} km, {} positions, id {}", lDuration.substr(0, lDuration.size() - 4),
                             nData.mTrack.getLengthM() / 1000.0, nData.mPoints, nData.mId);
}

bool hasReckoned(const PlotData& nData) {
  const std::vector<TrackPlace>& lPlaces = nData.mTrack.getPlaces();
  return std::any_of(lPlaces.begin(), lPlaces.end(), [](const TrackPlace& n) { return n.mFix == FIX_ESTIMATED; });
}

}  // namespace

std::string plotSvg(const PlotData& nData, bool nByFix) {
  Svg lSvg;
  lSvg.raw(
      fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 "
                  "{0:.0f} {1:.0f}\" role=\"img\">\n<title>{2}</title>\n<style>{3}</style>\n",
                  WIDTH, HEIGHT, Svg::escape(nData.mTitle), STYLE));
  lSvg.rectangle({0.0, 0.0, WIDTH, HEIGHT}, "page");
  lSvg.text(MAP.mX, 30.0, Svg::START, "title", nData.mTitle);
  lSvg.text(MAP.mX, 52.0, Svg::START, "label", subtitle(nData));
  const ColourScale lColours(nByFix, nData.mBins.rangeOf(SERIES_SPEED));
  MapPanel(nData.mTrack, lColours).draw(MAP, &lSvg);
  lColours.drawLegend({MAP.right() + 18.0, MAP.mY, WIDTH - MAP.right() - 24.0, MAP.mHeight}, hasReckoned(nData), &lSvg);
  TimePanels(nData.mBins).draw(MAP.mX, PANELS_Y, MAP.mWidth, &lSvg);
  return lSvg.getText() + "</svg>\n";
}

std::string plotHtml(const PlotData& nData, bool nByFix) {
  return fmt::format(
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n<title>{}</title>\n"
      "<style>body{{margin:0;background:#fff}}svg{{display:block;margin:0 auto;max-width:100%;height:auto}}</style>\n"
      "</head>\n<body>\n{}</body>\n</html>\n",
      Svg::escape(nData.mTitle), plotSvg(nData, nByFix));
}

}  // namespace logtool
