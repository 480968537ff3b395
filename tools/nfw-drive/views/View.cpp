#include "View.h"

#include "EpochJsonView.h"
#include "JsonView.h"
#include "LineView.h"
#include "LiveView.h"
#include "NmeaView.h"
#include "ServeView.h"
#include "SourceViews.h"

namespace drive {

namespace {

/// @param nSource the name that is shown, empty: none
std::unique_ptr<View> createLineView(const Options& nOptions, const ViewParts& nParts, const std::string& nSource) {
  const LineStyle lStyle = {nOptions.mShowsDeadReckoning, !nOptions.isPlayedAtOnce(), nSource};
  switch (nOptions.mFormat) {
    case FORMAT_JSON:
      return std::make_unique<EpochJsonView>(lStyle, nParts.mOutput);
    case FORMAT_JSONL_RAW:
      return std::make_unique<JsonView>(lStyle, nParts.mOutput);
    case FORMAT_NMEA:
      return std::make_unique<NmeaView>(lStyle, nParts.mOutput);
    case FORMAT_NONE:
      return std::make_unique<View>();
    case FORMAT_LIVE:
    case FORMAT_LINES:
      break;
  }
  return std::make_unique<LineView>(lStyle, nParts.mOutput);
}

/// The live view of the first source, and behind it what it looks at of the others.
std::vector<std::unique_ptr<View>> createLiveViews(const Options& nOptions, const ViewParts& nParts, size_t nNum) {
  std::vector<std::unique_ptr<View>> lViews(1);
  std::vector<const ShownEpoch*> lOthers;
  while (lViews.size() < nNum) {
    auto lpEpoch = std::make_unique<ShownEpoch>();
    lOthers.push_back(lpEpoch.get());
    lViews.push_back(std::move(lpEpoch));
  }
  lViews.front() = std::make_unique<LiveView>(nOptions, nParts, lOthers);
  return lViews;
}

// Of several sources each has one. A replay is of one stream, whatever it was recorded from.
std::vector<std::unique_ptr<View>> createSourceViews(const Options& nOptions, const ViewParts& nParts) {
  const size_t lNum = nOptions.mReplay.isWanted() ? 1 : nOptions.mSources.size();
  if (nOptions.mFormat == FORMAT_LIVE && nParts.mScreen.open()) return createLiveViews(nOptions, nParts, lNum);
  std::vector<std::unique_ptr<View>> lViews;
  for (size_t i = 0; i < lNum; ++i) {
    lViews.push_back(createLineView(nOptions, nParts, lNum > 1 ? nOptions.mSources[i].mLabel : ""));
  }
  return lViews;
}

}  // namespace

std::vector<std::unique_ptr<View>> createViews(const Options& nOptions, const ViewParts& nParts) {
  std::vector<std::unique_ptr<View>> lViews;
  std::vector<std::unique_ptr<View>> lOfSources = createSourceViews(nOptions, nParts);
  lViews.push_back(lOfSources.size() == 1 ? std::move(lOfSources.front())
                                          : std::make_unique<SourceViews>(std::move(lOfSources)));
  if (!nParts.mRoads.isEmpty()) {
    lViews.push_back(std::make_unique<ServeView>(nOptions.mShowsDeadReckoning, nParts.mRoads));
  }
  return lViews;
}

}  // namespace drive
