#include "TrackWriter.h"

#include "Format.h"

namespace logtool {

namespace {

const TrackFormat& formatOf(const std::string& nName, bool nIsLines) {
  if (nIsLines) return GEOJSON_LINES_FORMAT;
  for (const TrackFormat* lpFormat : {&GPX_FORMAT, &KML_FORMAT, &GEOJSON_FORMAT}) {
    if (nName == lpFormat->mpName) return *lpFormat;
  }
  return CSV_FORMAT;
}

}  // namespace

TrackWriter::TrackWriter(const std::string& nFormat, const Document& nDocument, OutputFile& nOutput)
    : mOutput(nOutput), mFormat(formatOf(nFormat, nDocument.mIsLines)), mDocument(nDocument) {}

// The document tells its time at its begin: it begins with the first point.
void TrackWriter::begin(int64_t nUtcMs) {
  if (mHasBegun) return;
  mHasBegun = true;
  mDocument.mUtcMs = nUtcMs;
  mOutput.write(mFormat.mpBegin(mDocument));
}

void TrackWriter::onTrack(size_t nTrack, const std::string& nName) { mOpen[nTrack].mName = nName; }

void TrackWriter::onPoint(const TrackPoint& nPoint) {
  begin(nPoint.mUtcMs);
  ++mPoints;
  Open& lOpen = mOpen[nPoint.mTrack];
  if (!lOpen.mPart) {
    lOpen.mText = std::make_unique<TrackText>(mOutput, mOpen.size() == 1);
    lOpen.mPart = mFormat.mpMakePart(*lOpen.mText, lOpen.mName, nPoint.mTrack == 0);
  }
  lOpen.mPart->add(nPoint);
}

void TrackWriter::end() {
  begin(-1);
  mOutput.write(mFormat.mpEnd);
}

void TrackWriter::onTracksEnd() {
  for (auto& lEntry : mOpen) {
    lEntry.second.mPart->end();
    lEntry.second.mText->finish();
  }
  mOpen.clear();
}

std::string decimalText(double nValue, int nMost) {
  std::string lText = fmt::format("{:.{}f}", nValue, nMost);
  while (lText.back() == '0' && lText[lText.size() - 2] != '.') lText.pop_back();
  return lText == "-0.0" ? "0.0" : lText;
}

}  // namespace logtool
