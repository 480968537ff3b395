#pragma once

#include <map>
#include <memory>

#include "TrackPoint.h"
#include "TrackText.h"

namespace logtool {

/// Writes one track in a format of its own, point by point.
class TrackPart {
 public:
  explicit TrackPart(TrackText& nText) : mText(nText) {}
  virtual ~TrackPart() = default;
  virtual void add(const TrackPoint& nPoint) = 0;
  virtual void end() {}

 protected:
  TrackText& mText;
};

/// What a document says of itself.
struct Document {
  std::string mName;       ///< for people; any bytes
  int64_t mUtcMs = -1;     ///< of its first point; -1 without a date
  bool mIsLines = false;   ///< GeoJSON: lines instead of points
  bool mIsSorted = false;  ///< the points of all tracks come by their times, and stand so where the format allows it
};

/// A format: what stands around the tracks.
struct TrackFormat {
  const char* mpName;
  std::string (*mpBegin)(const Document& nDocument);
  const char* mpEnd;
  bool mMayMix;  ///< its points are by themselves: those of several tracks may stand mixed
  /// @param nIsFirst of the document
  std::unique_ptr<TrackPart> (*mpMakePart)(TrackText& nText, const std::string& nName, bool nIsFirst);
};

extern const TrackFormat GPX_FORMAT, KML_FORMAT, GEOJSON_FORMAT, GEOJSON_LINES_FORMAT, CSV_FORMAT;

/// Writes tracks as a document, one behind the other, each with its name; sorted points stand mixed where they may.
class TrackWriter : public TrackSink {
 public:
  /// @param nFormat "gpx", "kml", "geojson" or "csv" @param nOutput not owned, outlives the writer
  TrackWriter(const std::string& nFormat, const Document& nDocument, OutputFile& nOutput);

  void onRecording(size_t nRecording) override { mRecording = nRecording; }
  void onTrack(size_t nTrack, const std::string& nName) override;
  void onPoint(const TrackPoint& nPoint) override;
  void onTracksEnd() override;
  void end();

  uint64_t getPoints() const { return mPoints; }

 private:
  struct Open {
    std::string mName;
    size_t mRecording = 0;
    bool mHasEnded = false;
    std::unique_ptr<TrackText> mText;
    std::unique_ptr<TrackPart> mPart;  // null before the first point
  };
  void begin(int64_t nUtcMs);
  void makePart(Open& nOpen, size_t nTrack);

  OutputFile& mOutput;
  const TrackFormat& mFormat;
  Document mDocument;
  bool mHasBegun = false;
  std::map<size_t, Open> mOpen;  // of the recordings under way, and what waits for one of them
  size_t mRecording = 0;         // whose turn it is
  uint64_t mPoints = 0;
};

/// Appends a number as short as it may be: with so many decimals at most, and one at least.
void appendDecimal(double nValue, int nMost, std::string* npText);
/// Appends longitude, latitude, and the altitude if it was told.
void appendPlace(const TrackPoint& nPoint, char nBetween, std::string* npText);

}  // namespace logtool
