#include "View.h"

#include "EpochJsonView.h"
#include "JsonView.h"
#include "LineView.h"
#include "NmeaView.h"
#include "ServeView.h"
#include "TableView.h"

namespace drive {

namespace {

std::unique_ptr<View> createView(const Options& nOptions, const Progress& nProgress, LogKinds& nKinds,
                                 OutputQueue& nOutput) {
  const bool lIsPrompt = !nOptions.mPlay.mPaced || nOptions.mPlay.mSpeed > 0.0;  // else the buffer may fill up first
  switch (nOptions.mFormat) {
    case FORMAT_JSON:
      return std::make_unique<EpochJsonView>(nOptions.mShowsDeadReckoning, lIsPrompt, nOutput);
    case FORMAT_JSONL_RAW:
      return std::make_unique<JsonView>(nOptions.mShowsDeadReckoning, lIsPrompt, nOutput);
    case FORMAT_NMEA:
      return std::make_unique<NmeaView>(nOptions.mShowsDeadReckoning, lIsPrompt, nOutput);
    case FORMAT_NONE:
      return std::make_unique<View>();
    case FORMAT_TABLE:
      break;
  }
  if (nOutput.isTerminal()) return std::make_unique<TableView>(nOptions, nProgress, nKinds, nOutput);
  return std::make_unique<LineView>(nOptions.mShowsDeadReckoning, lIsPrompt, nOutput);
}

}  // namespace

std::vector<std::unique_ptr<View>> createViews(const Options& nOptions, const Progress& nProgress, LogKinds& nKinds,
                                               OutputQueue& nOutput, Roads& nRoads) {
  std::vector<std::unique_ptr<View>> lViews;
  lViews.push_back(createView(nOptions, nProgress, nKinds, nOutput));
  if (!nRoads.isEmpty()) lViews.push_back(std::make_unique<ServeView>(nOptions.mShowsDeadReckoning, nRoads));
  return lViews;
}

}  // namespace drive
