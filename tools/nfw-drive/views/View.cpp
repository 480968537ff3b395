#include "View.h"

#include "EpochJsonView.h"
#include "JsonView.h"
#include "LineView.h"
#include "LiveView.h"
#include "NmeaView.h"
#include "ServeView.h"

namespace drive {

namespace {

std::unique_ptr<View> createView(const Options& nOptions, const ViewParts& nParts) {
  const bool lIsPrompt = !nOptions.mPlay.mPaced || nOptions.mPlay.mSpeed > 0.0;  // else the buffer may fill up first
  switch (nOptions.mFormat) {
    case FORMAT_JSON:
      return std::make_unique<EpochJsonView>(nOptions.mShowsDeadReckoning, lIsPrompt, nParts.mOutput);
    case FORMAT_JSONL_RAW:
      return std::make_unique<JsonView>(nOptions.mShowsDeadReckoning, lIsPrompt, nParts.mOutput);
    case FORMAT_NMEA:
      return std::make_unique<NmeaView>(nOptions.mShowsDeadReckoning, lIsPrompt, nParts.mOutput);
    case FORMAT_NONE:
      return std::make_unique<View>();
    case FORMAT_LIVE:
      if (nParts.mScreen.open()) return std::make_unique<LiveView>(nOptions, nParts);
      break;
    case FORMAT_LINES:
      break;
  }
  return std::make_unique<LineView>(nOptions.mShowsDeadReckoning, lIsPrompt, nParts.mOutput);
}

}  // namespace

std::vector<std::unique_ptr<View>> createViews(const Options& nOptions, const ViewParts& nParts) {
  std::vector<std::unique_ptr<View>> lViews;
  lViews.push_back(createView(nOptions, nParts));
  if (!nParts.mRoads.isEmpty()) {
    lViews.push_back(std::make_unique<ServeView>(nOptions.mShowsDeadReckoning, nParts.mRoads));
  }
  return lViews;
}

}  // namespace drive
