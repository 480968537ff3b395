#include "Commands.h"
#include "InfoText.h"
#include "Messages.h"
#include "OutputFile.h"
#include "TrackReader.h"

namespace logtool {

namespace {

/// Goes through a recording once, for its records and for its tracks.
void readInfo(Run& nRun, TrackReader& nTracks, const Recording& nRecording, RecordingStats* npStats,
              TrackStats* npTracks) {
  Selector lSelector(nRun.getOptions().mSelection);
  nTracks.begin(nRecording, *npTracks);
  nRun.read(nRecording, *npStats, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
    npStats->add(nReader, nRecord);
    return nTracks.take(nRecord, lSelector, lSelector.takes(nRecord));
  });
  nTracks.end(nRecording);
}

}  // namespace

int runInfo(Run& nRun) {
  OutputFile lOutput;
  if (!lOutput.open("-", false, {})) return EXIT_FOUND;
  int lExit = EXIT_DONE;
  std::string lJson;
  TrackReader lReader(nRun, TRACKS_OF_EACH_RECORDING);
  for (const Recording& lRecording : nRun.getRecordings()) {
    RecordingStats lStats(nRun.getOptions().mGapMs);
    TrackStats lTracks(nRun.getOptions().mGapMs);
    readInfo(nRun, lReader, lRecording, &lStats, &lTracks);
    for (const std::string& lLine : lStats.mUnreadable) say(lLine);
    if (!lStats.mUnreadable.empty()) lExit = EXIT_TROUBLE;
    if (!nRun.getOptions().mJson) lOutput.write(infoText(lRecording, lStats, lTracks));
    if (nRun.getOptions().mJson) lJson += (lJson.empty() ? "" : ",\n") + infoJson(lRecording, lStats, lTracks);
  }
  if (nRun.getOptions().mJson) lOutput.write("{\"recordings\":[" + lJson + "]}\n");
  return lOutput.commit() ? lExit : static_cast<int>(EXIT_FOUND);
}

}  // namespace logtool
