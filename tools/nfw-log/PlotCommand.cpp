#include <fmt/format.h>

#include <algorithm>
#include <filesystem>

#include "OutputFile.h"
#include "PlotPage.h"
#include "ProblemReport.h"
#include "Run.h"
#include "TrackReader.h"

namespace logtool {

namespace {

const size_t MAX_TITLE = 80;

// A file may have any bytes in its name, a picture may not.
std::string titleOf(const std::vector<Recording>& nRecordings) {
  std::string lTitle;
  for (const Recording& lRecording : nRecordings) {
    if (!lTitle.empty()) lTitle += ", ";
    lTitle += std::filesystem::path(lRecording.mName).filename().string();
  }
  std::replace_if(
      lTitle.begin(), lTitle.end(), [](char nByte) { return nByte < 0x20 || nByte > 0x7E; }, '?');
  return lTitle.size() > MAX_TITLE ? lTitle.substr(0, MAX_TITLE) + "..." : lTitle;
}

}  // namespace

int runPlot(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  ProblemReport lProblems;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  PlotData lData;
  lData.mTitle = titleOf(nRun.getRecordings());
  TrackReader lReader(nRun);
  lReader.read(lProblems, lData);
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (lData.mPoints == 0) {
    fmt::print(stderr, "nfw-log: no position in what was selected: nothing to plot\n");
    return EXIT_FOUND;
  }
  const bool lByFix = lOptions.mColour == "fix";
  lOutput.write(lOptions.mHtml ? plotHtml(lData, lByFix) : plotSvg(lData, lByFix));
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
