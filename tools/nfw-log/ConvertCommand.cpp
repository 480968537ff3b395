#include <filesystem>

#include "Commands.h"
#include "GeoPackage.h"
#include "McapWriter.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "Sentences.h"
#include "SortedRecords.h"
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

/// Writes the sentences of records.
class NmeaRecords : public SortedSink {
 public:
  explicit NmeaRecords(OutputFile& nOutput) : mOutput(nOutput), mWriter(nOutput) {}
  bool onRecord(const tool::Record& nRecord, const TrackRecords::Place& /*nPlace*/) override {
    if (!mSentences.read(nRecord, mWriter)) ++mUndecoded;
    return !mOutput.isClosed();
  }
  uint64_t getUndecoded() const { return mUndecoded; }

 private:
  OutputFile& mOutput;
  NmeaWriter mWriter;
  Sentences mSentences;
  uint64_t mUndecoded = 0;
};

uint64_t convertToNmea(Run& nRun, Problems& nProblems, OutputFile& nOutput) {
  NmeaRecords lWriter(nOutput);
  if (nRun.getOptions().mSort) {
    readSorted(nRun, TRACK_OF_RECEIVER, nProblems, lWriter);
    return lWriter.getUndecoded();
  }
  TrackRecords lRecords(nRun);
  for (const Recording& lRecording : nRun.getRecordings()) {
    lRecords.read(lRecording, nProblems, [&](const tool::Record& nRecord, const TrackRecords::Place& nPlace) {
      return lWriter.onRecord(nRecord, nPlace);
    });
  }
  return lWriter.getUndecoded();
}

template <class Writer>
uint64_t writeTracks(Run& nRun, TrackChoice nChoice, Problems& nProblems, Writer& nWriter) {
  TrackReader lReader(nRun, nChoice);
  lReader.read(nProblems, nWriter);
  nWriter.end();
  if (nWriter.getPoints() == 0) say("no position in what was selected");
  return lReader.getUndecoded();
}

/// The name that a document of these recordings has.
std::string nameOf(const Run& nRun) {
  if (!nRun.getOptions().mName.empty()) return nRun.getOptions().mName;
  const std::string lName = std::filesystem::path(nRun.getRecordings().front().mName).filename().string();
  const size_t lOthers = nRun.getRecordings().size() - 1;
  return lOthers == 0 ? lName : fmt::format("{} and {} more", lName, lOthers);
}

uint64_t convertToTrack(Run& nRun, Problems& nProblems, OutputFile& nOutput) {
  const Options& lOptions = nRun.getOptions();
  TrackWriter lWriter(lOptions.mFormat, {nameOf(nRun), -1, lOptions.mLines, lOptions.mSort}, nOutput);
  return writeTracks(nRun, TRACK_OF_RECEIVER, nProblems, lWriter);
}

uint64_t convertToMcap(Run& nRun, Problems& nProblems, OutputFile& nOutput) {
  McapWriter lWriter(nOutput, nRun.getRecordings());
  const uint64_t lUndecoded = writeTracks(nRun, TRACKS_OF_BOTH, nProblems, lWriter);
  if (lWriter.getUndated() > 0) {
    tell("{} without a date: the time is that since the recording's begin, from 1970 on",
         countText(lWriter.getUndated(), "position"));
  }
  return lUndecoded;
}

}  // namespace

int runConvert(Run& nRun) {
  const Options& lOptions = nRun.getOptions();
  if (lOptions.mFormat == "gpkg") return convertToGeoPackage(nRun);
  OutputFile lOutput;
  ProblemReport lProblems;
  if (!lOutput.open(lOptions.mOutput, lOptions.mForce, nRun.getRecordings())) return EXIT_TROUBLE;
  const auto lConvert = lOptions.mFormat == "nmea"   ? convertToNmea
                        : lOptions.mFormat == "mcap" ? convertToMcap
                                                     : convertToTrack;
  const uint64_t lUndecoded = lConvert(nRun, lProblems, lOutput);
  if (lUndecoded > 0) tell("{} of sentences could not be decoded", countText(lUndecoded, "record"));
  if (!nRun.wasSelectable()) return EXIT_TROUBLE;
  if (lProblems.exitCode() != EXIT_DONE) return lProblems.exitCode();
  return lOutput.commit() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
