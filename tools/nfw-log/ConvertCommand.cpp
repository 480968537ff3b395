#include "Commands.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "Sentences.h"
#include "TrackReader.h"
#include "TrackRecords.h"
#include "TrackWriter.h"

namespace logtool {

namespace {

class NmeaWriter : public tool::SentenceSink {
 public:
  explicit NmeaWriter(OutputFile& nOutput) : mOutput(nOutput) {}
  bool onSentence(std::string_view nSentence) override {
    mOutput.write(nSentence);
    mOutput.write("\r\n");
    return true;
  }

 private:
  OutputFile& mOutput;
};

uint64_t convertToNmea(Run& nRun, Problems& nProblems, OutputFile& nOutput) {
  Sentences lSentences;
  NmeaWriter lWriter(nOutput);
  uint64_t lUndecoded = 0;
  TrackRecords lRecords(nRun);
  for (const Recording& lRecording : nRun.getRecordings()) {
    lRecords.read(lRecording, nProblems, [&](const tool::Record& nRecord, const TrackRecords::Place&) {
      if (!lSentences.read(nRecord, lWriter)) ++lUndecoded;
      return !nOutput.isClosed();
    });
  }
  return lUndecoded;
}

uint64_t convertToTrack(Run& nRun, Problems& nProblems, OutputFile& nOutput) {
  TrackWriter lWriter(nRun.getOptions().mFormat, nOutput);
  TrackReader lReader(nRun);
  lReader.read(nProblems, lWriter);
  lWriter.end();
  if (lWriter.getPoints() == 0) say("no position in what was selected");
  return lReader.getUndecoded();
}

}  // namespace

int runConvert(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  OutputFile lOutput;
  ProblemReport lProblems;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  const auto lConvert = lOptions.mFormat == "nmea" ? convertToNmea : convertToTrack;
  const uint64_t lUndecoded = lConvert(nRun, lProblems, lOutput);
  if (lUndecoded > 0) tell("{} of sentences could not be decoded", countText(lUndecoded, "record"));
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
