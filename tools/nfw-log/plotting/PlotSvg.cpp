#include "PlotSvg.h"

#include <algorithm>

#include "ColourScale.h"
#include "Format.h"
#include "MapPanel.h"
#include "Messages.h"
#include "Svg.h"
#include "TimePanels.h"
#include "WallClock.h"
#include "XmlText.h"

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
    ".band{fill-opacity:.2}"
    ".curve{fill:none;stroke-width:1.4;stroke-linejoin:round;stroke-linecap:round}"
    ".side{fill:none;stroke-width:8;stroke-opacity:.35;stroke-linejoin:round;stroke-linecap:round}";

const char* const TRACK_COLOURS[] = {"#1f5fa8", "#b5306b", "#2e7d32", "#b26a00"};

std::string lengthsText(const PlotData& nData) {
  std::string lText;
  for (const auto& lpTrack : nData.mTracks) {
    lText +=
        fmt::format("{}{}: {:.2f} km, {}", lText.empty() ? "" : "; ", lpTrack->mName,
                    lpTrack->mStats.getDistanceM() / 1000.0, countText(lpTrack->mStats.getPositions(), "position"));
  }
  return lText;
}

std::string subtitle(const PlotData& nData, const TimePanels& nPanels) {
  std::string lText;
  if (nPanels.isUtc()) {
    lText = timeText(nPanels.getFrom()).substr(0, 19) + " to " + timeText(nPanels.getTo()).substr(0, 19) + " UTC, ";
  }
  const std::string lDuration = durationText(static_cast<uint64_t>(nPanels.getTo() - nPanels.getFrom()));
  lText += lDuration.substr(0, lDuration.size() - 4) + ", " + lengthsText(nData);
  uint64_t lUndated = 0;
  for (const auto& lpTrack : nData.mTracks) lUndated += lpTrack->mBins.getUndated();
  if (!nPanels.isUtc() || lUndated == 0) return lText;
  return lText + fmt::format("; {} without a date on the map only", lUndated);
}

bool hasReckoned(const TrackThinner& nTrack) {
  const std::vector<TrackPlace>& lPlaces = nTrack.getPlaces();
  return std::any_of(lPlaces.begin(), lPlaces.end(), [](const TrackPlace& n) { return n.mFix == FIX_ESTIMATED; });
}

// Which colour is whose, beside the first curve.
void drawNames(const PlotData& nData, double nX, double nY, Svg* npSvg) {
  for (size_t i = 0; i < nData.mTracks.size(); ++i) {
    const double lY = nY + 18.0 * static_cast<double>(i);
    npSvg->path(fmt::format("M{:.1f} {:.1f}h16", nX, lY), "side", TRACK_COLOURS[i % std::size(TRACK_COLOURS)]);
    npSvg->text(nX + 24.0, lY + 4.0, Svg::START, "label", nData.mTracks[i]->mName);
  }
}

}  // namespace

std::string plotSvg(const PlotData& nData, bool nByFix) {
  Svg lSvg;
  lSvg.raw(
      fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"{0:.0f}\" height=\"{1:.0f}\" viewBox=\"0 0 "
                  "{0:.0f} {1:.0f}\" role=\"img\">\n<title>{2}</title>\n<style>{3}</style>\n",
                  WIDTH, HEIGHT, xmlText(nData.mTitle), STYLE));
  lSvg.rectangle({0.0, 0.0, WIDTH, HEIGHT}, "page");
  lSvg.text(MAP.mX, 30.0, Svg::START, "title", nData.mTitle);
  std::vector<MapTrack> lTracks;
  std::vector<TimeCurve> lCurves;
  Range lSpeed;
  bool lHasReckoned = false;
  for (const auto& lpTrack : nData.mTracks) {
    const char* const lpColour = TRACK_COLOURS[lTracks.size() % std::size(TRACK_COLOURS)];
    lTracks.push_back({&lpTrack->mTrack, lpTrack->mName, lpColour});
    lCurves.push_back({&lpTrack->mBins, lpColour});
    lSpeed.add(lpTrack->mBins.rangeOf(SERIES_SPEED));
    lHasReckoned = lHasReckoned || hasReckoned(lpTrack->mTrack);
  }
  const TimePanels lPanels(lCurves);
  lSvg.text(MAP.mX, 52.0, Svg::START, "label", subtitle(nData, lPanels));
  const ColourScale lColours(nByFix, lSpeed);
  MapPanel(nData.mGround, lTracks, lColours).draw(MAP, &lSvg);
  lColours.drawLegend({MAP.right() + 18.0, MAP.mY, WIDTH - MAP.right() - 24.0, MAP.mHeight}, lHasReckoned, &lSvg);
  lPanels.draw(MAP.mX, PANELS_Y, MAP.mWidth, &lSvg);
  if (lTracks.size() > 1) drawNames(nData, MAP.right() + 18.0, PANELS_Y + TimePanels::PANEL_DISTANCE + 8.0, &lSvg);
  return lSvg.getText() + "</svg>\n";
}

}  // namespace logtool
