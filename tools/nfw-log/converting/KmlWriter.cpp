#include "Format.h"
#include "TrackWriter.h"
#include "WallClock.h"
#include "XmlText.h"

namespace logtool {

namespace {

const size_t MAX_POINTS = 1000;  // of a piece, which is held: its times stand before its positions

/// A range of speeds with its colour, as KML writes it: opacity, blue, green, red.
struct SpeedBand {
  double mFromKmh;
  const char* mpColour;
};
const SpeedBand BANDS[] = {{0.0, "ffb02020"},  {10.0, "ffe07010"},  {30.0, "ffc0b000"}, {50.0, "ff40b030"},
                           {80.0, "ff00c0e0"}, {110.0, "ff0070f0"}, {150.0, "ff2020d0"}};
const size_t BAND_NUM = sizeof(BANDS) / sizeof(BANDS[0]);
const size_t NO_SPEED = BAND_NUM;
const double SLACK_KMH = 5.0;  // a speed that moves about a bound does not change the colour at every point

size_t bandOf(double nKmh) {
  if (std::isnan(nKmh)) return NO_SPEED;
  size_t lBand = BAND_NUM - 1;
  while (lBand > 0 && nKmh < BANDS[lBand].mFromKmh) --lBand;
  return lBand;
}

size_t bandAfter(size_t nBand, double nKmh) {
  if (nBand == NO_SPEED || std::isnan(nKmh)) return bandOf(nKmh);
  const bool lIsBelow = nKmh < BANDS[nBand].mFromKmh - SLACK_KMH;
  const bool lIsAbove = nBand + 1 < BAND_NUM && nKmh > BANDS[nBand + 1].mFromKmh + SLACK_KMH;
  return lIsBelow || lIsAbove ? bandOf(nKmh) : nBand;
}

std::string bandName(size_t nBand) {
  if (nBand == NO_SPEED) return "speed not told";
  if (nBand + 1 == BAND_NUM) return fmt::format("{:.0f} km/h and more", BANDS[nBand].mFromKmh);
  return fmt::format("{:.0f} to {:.0f} km/h", BANDS[nBand].mFromKmh, BANDS[nBand + 1].mFromKmh);
}

/// KML 2.2 with its extension for tracks, which need times. A stretch of one colour without a break is a placemark; its
/// pieces join, and so do placemarks where only the colour changes. What has no time is a line beside them.
class KmlPart : public TrackPart {
 public:
  KmlPart(TrackText& nText, const std::string& nName) : TrackPart(nText) {
    mText.write("<Folder>\n<name>" + xmlText(nName) + "</name>\n");
  }

  void add(const TrackPoint& nPoint) override {
    const bool lIsTimed = nPoint.mUtcMs >= 0;
    const bool lIsNew = nPoint.mIsBreak || !mIsInside || lIsTimed != mIsTimed;
    const size_t lBand = lIsNew ? bandOf(nPoint.mSpeedKmh) : bandAfter(mBand, nPoint.mSpeedKmh);
    if (lIsNew || lBand != mBand) {
      endPlacemark();
      beginPlacemark(lIsTimed, lBand);
      if (!lIsNew) hold(mLast);
    } else if (mHeld == MAX_POINTS) {
      endPiece();
      hold(mLast);
    }
    hold(nPoint);
    mLast = nPoint;
  }

  void end() override {
    endPlacemark();
    mText.write("</Folder>\n");
  }

 private:
  void beginPlacemark(bool nIsTimed, size_t nBand) {
    mIsInside = true;
    mIsTimed = nIsTimed;
    mBand = nBand;
    mText.write("<Placemark>\n<name>" + bandName(nBand) +
                fmt::format("</name>\n<styleUrl>#speed{}</styleUrl>\n", nBand));
    mText.write(nIsTimed ? "<gx:MultiTrack>\n<altitudeMode>clampToGround</altitudeMode>\n"
                           "<gx:interpolate>1</gx:interpolate>\n"
                         : "<MultiGeometry>\n");
  }

  void endPlacemark() {
    if (!mIsInside) return;
    endPiece();
    mText.write(mIsTimed ? "</gx:MultiTrack>\n</Placemark>\n" : "</MultiGeometry>\n</Placemark>\n");
    mIsInside = false;
  }

  // What is not told of the altitude is left out: on the ground it says nothing.
  void hold(const TrackPoint& nPoint) {
    if (mIsTimed) mPositions += "<gx:coord>";
    appendPlace(nPoint, mIsTimed ? ' ' : ',', &mPositions);
    mPositions += mIsTimed ? "</gx:coord>\n" : "\n";
    if (mIsTimed) {
      mWhens += "<when>";
      appendUtc(nPoint.mUtcMs, &mWhens);
      mWhens += "</when>\n";
    }
    ++mHeld;
  }

  void endPiece() {
    if (mIsTimed)
      mText.write("<gx:Track>\n" + mWhens + mPositions + "</gx:Track>\n");
    else if (mHeld > 1)
      mText.write("<LineString>\n<coordinates>\n" + mPositions + "</coordinates>\n</LineString>\n");
    else
      mText.write("<Point>\n<coordinates>" + mPositions + "</coordinates>\n</Point>\n");
    mWhens.clear();
    mPositions.clear();
    mHeld = 0;
  }

  bool mIsInside = false;
  bool mIsTimed = true;
  size_t mBand = NO_SPEED;
  size_t mHeld = 0;
  std::string mWhens, mPositions;  // of the points held
  TrackPoint mLast;
};

std::string begin(const Document& nDocument) {
  std::string lText =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<kml xmlns=\"http://www.opengis.net/kml/2.2\" xmlns:gx=\"http://www.google.com/kml/ext/2.2\">\n"
      "<Document>\n<name>" +
      xmlText(nDocument.mName) + "</name>\n";
  for (size_t i = 0; i <= BAND_NUM; ++i) {
    lText += fmt::format("<Style id=\"speed{}\"><LineStyle><color>{}</color><width>4</width></LineStyle></Style>\n", i,
                         i == NO_SPEED ? "ffd06010" : BANDS[i].mpColour);
  }
  return lText;
}

}  // namespace

const TrackFormat KML_FORMAT = {"kml", begin, "</Document>\n</kml>\n", false,
                                [](TrackText& nText, const std::string& nName, bool) -> std::unique_ptr<TrackPart> {
                                  return std::make_unique<KmlPart>(nText, nName);
                                }};

}  // namespace logtool
