#include <filesystem>

#include "Messages.h"
#include "OutputFile.h"
#include "PlotPage.h"
#include "PrintableText.h"
#include "ProblemReport.h"
#include "Run.h"
#include "TrackReader.h"

namespace logtool {

namespace {

const size_t MAX_TITLE = 80;

// A file may have any bytes in its name, a picture may not: "?" for what is no character, or none of XML.
void appendShown(std::string_view nText, std::string* npText) {
  while (!nText.empty()) {
    const size_t lSize = tool::characterSize(nText);
    const std::string_view lCharacter = nText.substr(0, lSize == 0 ? 1 : lSize);
    const bool lIsXml =
        lSize > 0 && !tool::isControl(lCharacter) && lCharacter != "\xEF\xBF\xBE" && lCharacter != "\xEF\xBF\xBF";
    npText->append(lIsXml ? lCharacter : "?");
    nText.remove_prefix(lCharacter.size());
  }
}

// Of so many bytes at most, cut between two characters.
std::string shortened(std::string_view nText) {
  if (nText.size() <= MAX_TITLE) return std::string(nText);
  size_t lEnd = 0;
  while (lEnd + tool::characterSize(nText.substr(lEnd)) <= MAX_TITLE) lEnd += tool::characterSize(nText.substr(lEnd));
  return std::string(nText.substr(0, lEnd)) + "...";
}

std::string titleOf(const std::vector<Recording>& nRecordings) {
  std::string lTitle;
  for (const Recording& lRecording : nRecordings) {
    if (!lTitle.empty()) lTitle += ", ";
    appendShown(std::filesystem::path(lRecording.mName).filename().string(), &lTitle);
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
  PlotData lData;
  lData.mTitle = titleOf(nRun.getRecordings());
  TrackReader lReader(nRun);
  lReader.read(lProblems, lData);
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  if (lData.mPoints == 0) {
    say("no position in what was selected: nothing to plot");
    return EXIT_FOUND;
  }
  const bool lByFix = lOptions.mColour == "fix";
  lOutput.write(lOptions.mHtml ? plotHtml(lData, lByFix) : plotSvg(lData, lByFix));
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
