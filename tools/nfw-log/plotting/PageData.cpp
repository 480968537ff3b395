#include "PageData.h"

#include <algorithm>
#include <cmath>

#include "ColourScale.h"
#include "JsonObject.h"
#include "SentenceTime.h"

namespace logtool {

namespace {

using tool::JsonObject;

/// A row of whole numbers, each as the difference from the one before; what is no number is null.
class Row {
 public:
  Row(JsonObject& nObject, const char* npKey) : mList(nObject.key(npKey), '[') {}

  void add(int64_t nValue) {
    fmt::format_to(std::back_inserter(*mList.element()), "{}", nValue - mLast);
    mLast = nValue;
  }
  void add(double nValue, double nScale) {
    if (std::isfinite(nValue)) return add(std::llround(nValue * nScale));
    mList.element()->append("null");
  }

 private:
  JsonObject mList;
  int64_t mLast = 0;
};

void addPlaces(const PlotData& nData, const TrackThinner& nTrack, bool nIsUtc, JsonObject& nObject) {
  JsonObject lPoints(nObject.key("points"));
  const std::vector<TrackPlace>& lPlaces = nTrack.getPlaces();
  {
    Row lRow(lPoints, "t");
    for (const TrackPlace& lPlace : lPlaces) lRow.add(nIsUtc == lPlace.mIsUtc ? lPlace.mTime : int64_t{-1});
  }
  {
    Row lRow(lPoints, "lat");
    for (const TrackPlace& lPlace : lPlaces) lRow.add(nData.mGround.latitudeOf(lPlace.mPlace.mNorth), 1e7);
  }
  {
    Row lRow(lPoints, "lon");
    for (const TrackPlace& lPlace : lPlaces) lRow.add(nData.mGround.longitudeOf(lPlace.mPlace.mEast), 1e7);
  }
  {
    Row lRow(lPoints, "speed");
    for (const TrackPlace& lPlace : lPlaces) lRow.add(static_cast<double>(lPlace.mSpeedKmh), 10.0);
  }
  std::string lFixes, lBreaks;
  for (const TrackPlace& lPlace : lPlaces) lFixes.push_back(static_cast<char>('0' + lPlace.mFix));
  for (const TrackPlace& lPlace : lPlaces) lBreaks.push_back(lPlace.mIsBreak ? '1' : '0');
  lPoints.text("fix", lFixes);
  lPoints.text("breaks", lBreaks);
}

/// Least and greatest stand there only if they tell more than the mean.
void addSeries(const std::vector<TimeBin>& nBins, Series nSeries, const char* npName, double nScale,
               JsonObject& nObject) {
  const auto lIsEmpty = [&](const TimeBin& nBin) { return nBin.mRanges[nSeries].isEmpty(); };
  if (std::all_of(nBins.begin(), nBins.end(), lIsEmpty)) return;
  JsonObject lSeries(nObject.key(npName));
  lSeries.real("scale", nScale);
  const auto lAdd = [&](const char* npKey, auto nValueOf) {
    Row lRow(lSeries, npKey);
    for (const TimeBin& lBin : nBins) lRow.add(lIsEmpty(lBin) ? NAN : nValueOf(lBin.mRanges[nSeries]), nScale);
  };
  lAdd("mean", [](const Range& n) { return n.mean(); });
  const auto lIsWide = [&](const TimeBin& nBin) { return nBin.mRanges[nSeries].mHigh > nBin.mRanges[nSeries].mLow; };
  if (std::none_of(nBins.begin(), nBins.end(), lIsWide)) return;
  lAdd("low", [](const Range& n) { return n.mLow; });
  lAdd("high", [](const Range& n) { return n.mHigh; });
}

void addBins(const TimeBins& nTimeBins, bool nIsUtc, JsonObject& nObject) {
  if (nTimeBins.isUtc() != nIsUtc) return;  // not on the axis of time
  const std::vector<TimeBin>& lBins = nTimeBins.getBins();
  JsonObject lObject(nObject.key("bins"));
  {
    Row lRow(lObject, "t");
    for (const TimeBin& lBin : lBins) lRow.add(lBin.mFrom + (lBin.mTo - lBin.mFrom) / 2);
  }
  std::string lBreaks, lReckoned;
  for (const TimeBin& lBin : lBins) lBreaks.push_back(lBin.mIsBreak ? '1' : '0');
  for (const TimeBin& lBin : lBins) lReckoned.push_back(lBin.mIsReckoned ? '1' : '0');
  lObject.text("breaks", lBreaks);
  lObject.text("reckoned", lReckoned);
  addSeries(lBins, SERIES_SPEED, "speed", 10.0, lObject);
  addSeries(lBins, SERIES_ALTITUDE, "altitude", 10.0, lObject);
  addSeries(lBins, SERIES_SATELLITES, "satellites", 10.0, lObject);
  addSeries(lBins, SERIES_HDOP, "hdop", 100.0, lObject);
}

/// @param nFrom the least time that the axis may have
void addScatter(const Stand* npStand, int64_t nFrom, JsonObject& nObject) {
  if (npStand == nullptr || npStand->getFrom() < nFrom) return;
  JsonObject lObject(nObject.key("scatter"));
  const Stand::Scatter lScatter = npStand->scatter();
  lObject.number("positions", npStand->getPositions());
  lObject.number("duration", static_cast<uint64_t>(npStand->getDurationMs()));
  lObject.real("east", lScatter.mEast);
  lObject.real("north", lScatter.mNorth);
  lObject.real("cep50", lScatter.mCep50);
  lObject.real("cep95", lScatter.mCep95);
  const auto lAdd = [&](const char* npKey, auto nAdd) {
    Row lRow(lObject, npKey);
    for (const Stand::Place& lPlace : npStand->getPlaces()) nAdd(lRow, lPlace);
  };
  lAdd("t", [](Row& nRow, const Stand::Place& n) { nRow.add(n.mTime); });
  lAdd("e", [](Row& nRow, const Stand::Place& n) { nRow.add(static_cast<double>(n.mEast), 1000.0); });
  lAdd("n", [](Row& nRow, const Stand::Place& n) { nRow.add(static_cast<double>(n.mNorth), 1000.0); });
}

/// One character a stretch of time: "." not in view, "-" without a signal, else its strength in base 64.
std::string signalsOf(const SkyBins& nSky, size_t nSatellite) {
  static const char DIGITS[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string lText;
  for (const SkyBins::Bin& lBin : nSky.getBins()) {
    const SkyCell lCell = nSatellite < lBin.mCells.size() ? lBin.mCells[nSatellite] : SkyCell{};
    if (lCell.mSignals == 0)
      lText.push_back(lCell.mTold == 0 ? '.' : '-');
    else
      lText.push_back(DIGITS[std::min<uint32_t>((lCell.mSnrSum + lCell.mSignals / 2) / lCell.mSignals, 63)]);
  }
  return lText;
}

/// Number of the stretch, elevation and azimuth where they change.
void addWay(const SkyBins& nSky, size_t nSatellite, JsonObject& nObject) {
  JsonObject lWay(nObject.key("way"), '[');
  int lElevation = -1, lAzimuth = -1;
  const std::vector<SkyBins::Bin>& lBins = nSky.getBins();
  for (size_t i = 0; i < lBins.size(); ++i) {
    if (nSatellite >= lBins[i].mCells.size()) continue;
    const SkyCell& lCell = lBins[i].mCells[nSatellite];
    const bool lIsKnown = lCell.mElevation >= 0 && lCell.mAzimuth >= 0;
    if (!lIsKnown || (lCell.mElevation == lElevation && lCell.mAzimuth == lAzimuth)) continue;
    lElevation = lCell.mElevation;
    lAzimuth = lCell.mAzimuth;
    fmt::format_to(std::back_inserter(*lWay.element()), "{},{},{}", i, lElevation, lAzimuth);
  }
}

void addSky(const SkyBins& nSky, bool nIsUtc, JsonObject& nObject) {
  if (nSky.getSatellites().empty() || nSky.isUtc() != nIsUtc) return;
  JsonObject lSky(nObject.key("sky"));
  {
    Row lRow(lSky, "t");
    for (const SkyBins::Bin& lBin : nSky.getBins()) lRow.add(lBin.mFrom);
  }
  {
    Row lRow(lSky, "end");
    for (const SkyBins::Bin& lBin : nSky.getBins()) lRow.add(lBin.mTo);
  }
  JsonObject lList(lSky.key("satellites"), '[');
  for (size_t i = 0; i < nSky.getSatellites().size(); ++i) {
    const SatelliteName lName = nSky.getSatellites()[i];
    JsonObject lSatellite(lList.element());
    lSatellite.text("system", constellationName(lName.mConstellation));
    lSatellite.text("name", fmt::format("{}{:02}", constellationLetter(lName.mConstellation), lName.mNumber));
    lSatellite.text("snr", signalsOf(nSky, i));
    addWay(nSky, i, lSatellite);
  }
}

void addTrack(const PlotData& nData, const PlotTrack& nTrack, bool nIsUtc, std::string* npText) {
  JsonObject lTrack(npText);
  lTrack.text("name", nTrack.mName);
  {
    JsonObject lStats(lTrack.key("stats"));
    addStats(nTrack.mStats, lStats);
  }
  addPlaces(nData, nTrack.mTrack, nIsUtc, lTrack);
  addBins(nTrack.mBins, nIsUtc, lTrack);
  // A stand without a date has no place on an axis of dates.
  addScatter(nTrack.mStats.getStand(), nIsUtc ? tool::MS_PER_DAY : 0, lTrack);
}

/// So that no text ends the script element that the data stands in.
std::string withoutTags(const std::string& nText) {
  std::string lText;
  for (const char lByte : nText) lByte == '<' ? lText.append("\\u003c") : lText.append(1, lByte);
  return lText;
}

}  // namespace

std::string pageData(const PlotData& nData, bool nByFix) {
  const auto lHasUtc = [](const auto& npTrack) { return npTrack->mBins.isUtc(); };
  const bool lIsUtc = std::any_of(nData.mTracks.begin(), nData.mTracks.end(), lHasUtc);
  std::string lText;
  {
    JsonObject lPage(&lText);
    lPage.text("title", nData.mTitle);
    lPage.flag("utc", lIsUtc);
    lPage.text("colour", nByFix ? "fix" : "speed");
    {
      JsonObject lTracks(lPage.key("tracks"), '[');
      for (const auto& lpTrack : nData.mTracks) addTrack(nData, *lpTrack, lIsUtc, lTracks.element());
    }
    addSky(nData.mSky, lIsUtc, lPage);
  }
  return withoutTags(lText);
}

}  // namespace logtool
