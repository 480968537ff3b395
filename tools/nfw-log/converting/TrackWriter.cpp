#include "TrackWriter.h"

#include <fmt/format.h>

namespace logtool {

namespace {

const TrackFormat& formatOf(const std::string& nName) {
  for (const TrackFormat* lpFormat : {&GPX_FORMAT, &KML_FORMAT, &GEOJSON_FORMAT}) {
    if (nName == lpFormat->mpName) return *lpFormat;
  }
  return CSV_FORMAT;
}

}  // namespace

TrackWriter::TrackWriter(const std::string& nFormat, OutputFile& nOutput)
    : mOutput(nOutput), mFormat(formatOf(nFormat)) {
  mOutput.write(mFormat.mpBegin);
}

void TrackWriter::onTrack(size_t nTrack, const std::string& nName) {
  Open lOpen;
  lOpen.mText = std::make_unique<TrackText>(mOutput, mOpen.empty());
  lOpen.mPart = mFormat.mpMakePart(*lOpen.mText, nName, nTrack == 0);
  mOpen[nTrack] = std::move(lOpen);
}

void TrackWriter::onPoint(const TrackPoint& nPoint) {
  ++mPoints;
  mOpen[nPoint.mTrack].mPart->add(nPoint);
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
