#include <filesystem>

#include "Commands.h"
#include "Messages.h"
#include "OutputFile.h"
#include "PlotPage.h"
#include "PlotSvg.h"
#include "PrintableText.h"
#include "ProblemReport.h"
#include "TrackReader.h"

namespace logtool {

namespace {

const size_t MAX_TITLE = 80;

// Cut between two characters.
std::string shortened(const std::string& nText) {
  if (nText.size() <= MAX_TITLE) return nText;
  size_t lEnd = MAX_TITLE;
  while (lEnd > MAX_TITLE - 4 && tool::characterSize(std::string_view(nText).substr(lEnd)) == 0) --lEnd;
  return nText.substr(0, lEnd) + "...";
}

std::string titleOf(const std::vector<Recording>& nRecordings) {
  std::string lTitle;
  for (const Recording& lRecording : nRecordings) {
    if (!lTitle.empty()) lTitle += ", ";
    lTitle += std::filesystem::path(lRecording.mName).filename().string();
    if (lTitle.size() > MAX_TITLE) break;
  }
  return shortened(lTitle);
}

}  // namespace

int runPlot(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  ProblemReport lProblems;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  PlotData lData(lOptions.mHtml, lOptions.mGapMs);
  lData.mTitle = titleOf(nRun.getRecordings());
  TrackReader lReader(nRun, TRACKS_OF_BOTH);
  lReader.read(lProblems, lData);
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (lData.mTracks.empty()) {
    say("no position in what was selected: nothing to plot");
    return EXIT_FOUND;
  }
  const bool lByFix = lOptions.mColour == "fix";
  lOutput.write(lOptions.mHtml ? plotPage(lData, lByFix) : plotSvg(lData, lByFix));
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
