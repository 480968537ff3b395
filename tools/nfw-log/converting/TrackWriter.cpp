#include "TrackWriter.h"

#include "DecimalText.h"

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

void TrackWriter::onTrack(size_t nTrack, const std::string& nName) {
  mOpen[nTrack].mName = nName;
  mOpen[nTrack].mRecording = mRecording;
}

void TrackWriter::onPoint(const TrackPoint& nPoint) {
  begin(nPoint.mUtcMs);
  ++mPoints;
  Open& lOpen = mOpen[nPoint.mTrack];
  if (!lOpen.mPart) makePart(lOpen, nPoint.mTrack);
  lOpen.mPart->add(nPoint);
}

void TrackWriter::makePart(Open& nOpen, size_t nTrack) {
  const bool lIsMixed = mFormat.mMayMix && mDocument.mIsSorted;
  nOpen.mText = std::make_unique<TrackText>(mOutput, lIsMixed || mOpen.size() == 1);
  nOpen.mPart = mFormat.mpMakePart(*nOpen.mText, nOpen.mName, lIsMixed ? mPoints == 1 : nTrack == 0);
}

void TrackWriter::end() {
  begin(-1);
  mOutput.write(mFormat.mpEnd);
}

// A track that ends behind one that goes on waits for it.
void TrackWriter::onTracksEnd() {
  for (auto& [lTrack, lOpen] : mOpen) {
    if (lOpen.mRecording != mRecording) continue;
    lOpen.mPart->end();
    lOpen.mHasEnded = true;
  }
  while (!mOpen.empty() && mOpen.begin()->second.mHasEnded) {
    mOpen.begin()->second.mText->finish();
    mOpen.erase(mOpen.begin());
  }
}

void appendDecimal(double nValue, int nMost, std::string* npText) {
  const size_t lBegin = npText->size();
  tool::appendFixed(nValue, nMost, npText);
  while (npText->back() == '0' && (*npText)[npText->size() - 2] != '.') npText->pop_back();
  if (std::string_view(*npText).substr(lBegin) == "-0.0") npText->erase(lBegin, 1);
}

void appendPlace(const TrackPoint& nPoint, char nBetween, std::string* npText) {
  tool::appendFixed(nPoint.mLongitude, 7, npText);
  npText->push_back(nBetween);
  tool::appendFixed(nPoint.mLatitude, 7, npText);
  if (std::isnan(nPoint.mAltitude)) return;
  npText->push_back(nBetween);
  appendDecimal(nPoint.mAltitude, 3, npText);
}

}  // namespace logtool
