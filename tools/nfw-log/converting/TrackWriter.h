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

/// A format: what stands around the tracks.
struct TrackFormat {
  const char* mpName;
  const char* mpBegin;
  const char* mpEnd;
  /// @param nIsFirst of the document
  std::unique_ptr<TrackPart> (*mpMakePart)(TrackText& nText, const std::string& nName, bool nIsFirst);
};

extern const TrackFormat GPX_FORMAT, KML_FORMAT, GEOJSON_FORMAT, CSV_FORMAT;

/// Writes tracks as a document, one behind the other, each with its name.
class TrackWriter : public TrackSink {
 public:
  /// @param nFormat "gpx", "kml", "geojson" or "csv" @param nOutput not owned, outlives the writer
  TrackWriter(const std::string& nFormat, OutputFile& nOutput);

  void onTrack(size_t nTrack, const std::string& nName) override;
  void onPoint(const TrackPoint& nPoint) override;
  void onTracksEnd() override;
  void end() { mOutput.write(mFormat.mpEnd); }

  uint64_t getPoints() const { return mPoints; }

 private:
  struct Open {
    std::unique_ptr<TrackText> mText;
    std::unique_ptr<TrackPart> mPart;
  };
  OutputFile& mOutput;
  const TrackFormat& mFormat;
  std::map<size_t, Open> mOpen;  // of the recording under way
  uint64_t mPoints = 0;
};

/// A number as short as it may be: with so many decimals at most, and one at least.
std::string decimalText(double nValue, int nMost);

}  // namespace logtool
