#include "GeoPackage.h"

#include <sys/stat.h>

#include "GeoPackageWriter.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "TrackReader.h"

namespace logtool {

namespace {

std::vector<Recording> withoutKnown(const Run& nRun, GeoPackageWriter& nWriter) {
  std::vector<Recording> lNew;
  for (const Recording& lRecording : nRun.getRecordings()) {
    if (nWriter.has(lRecording))
      tell("{}: is in there already, and left out", lRecording.mName);
    else
      lNew.push_back(lRecording);
  }
  return lNew;
}

int trouble(const std::string& nPath, const Database& nDatabase) {
  tell("{}: cannot be written: {}", nPath, nDatabase.getError());
  return EXIT_FOUND;
}

/// Nothing of the database stays unless all of it is right.
int fill(Run& nRun, Database& nDatabase, const std::string& nPath) {
  ProblemReport lProblems;
  GeoPackageWriter lWriter(nDatabase);
  if (!nDatabase.isRight()) return trouble(nPath, nDatabase);
  const std::vector<Recording> lRecordings = withoutKnown(nRun, lWriter);
  lWriter.expect(lRecordings);
  Run lRun(nRun.getOptions(), lRecordings);
  TrackReader lReader(lRun, TRACKS_OF_BOTH);
  lReader.read(lProblems, lWriter);
  lWriter.end();
  if (lReader.getUndecoded() > 0) {
    tell("{} of sentences could not be decoded", countText(lReader.getUndecoded(), "record"));
  }
  if (!nDatabase.isRight()) return trouble(nPath, nDatabase);
  if (lRecordings.empty()) return EXIT_DONE;
  if (!lRun.wasSelectable()) return EXIT_TROUBLE;
  if (lWriter.getPoints() == 0) say("no position in what was selected");
  return lProblems.exitCode();
}

int append(Run& nRun, const std::string& nPath) {
  Database lDatabase;
  lDatabase.open(nPath, Database::EXISTING);
  const int lExit = lDatabase.isRight() ? fill(nRun, lDatabase, nPath) : trouble(nPath, lDatabase);
  if (lExit != EXIT_DONE) lDatabase.giveUp();
  return lDatabase.close() || lExit != EXIT_DONE ? lExit : trouble(nPath, lDatabase);
}

int makeNew(Run& nRun, const Options& nOptions) {
  OutputFile lOutput;
  if (!lOutput.open(nOptions.mOutput, nOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  Database lDatabase;
  lDatabase.open(lOutput.getTemporary(), Database::FRESH);
  const int lExit =
      lDatabase.isRight() ? fill(nRun, lDatabase, nOptions.mOutput) : trouble(nOptions.mOutput, lDatabase);
  if (lExit != EXIT_DONE) return lExit;
  if (!lDatabase.close()) return trouble(nOptions.mOutput, lDatabase);
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace

int convertToGeoPackage(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  struct stat lStat = {};
  const bool lIsThere = ::stat(lOptions.mOutput.c_str(), &lStat) == 0;
  return lOptions.mAppend && lIsThere ? append(nRun, lOptions.mOutput) : makeNew(nRun, lOptions);
}

}  // namespace logtool
