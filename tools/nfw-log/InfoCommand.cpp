#include "Commands.h"
#include "InfoText.h"
#include "Messages.h"
#include "OutputFile.h"

namespace logtool {

int runInfo(Run& nRun) {
  OutputFile lOutput;
  if (!lOutput.open("-", false, {})) return EXIT_FOUND;
  int lExit = EXIT_DONE;
  std::string lJson;
  for (const Recording& lRecording : nRun.getRecordings()) {
    RecordingStats lStats(nRun.getOptions().mGapMs);
    nRun.read(lRecording, lStats, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
      lStats.add(nReader, nRecord);
      return true;
    });
    for (const std::string& lLine : lStats.mUnreadable) say(lLine);
    if (!lStats.mUnreadable.empty()) lExit = EXIT_TROUBLE;
    if (!nRun.getOptions().mJson) lOutput.write(infoText(lRecording, lStats));
    if (nRun.getOptions().mJson) lJson += (lJson.empty() ? "" : ",\n") + infoJson(lRecording, lStats);
  }
  if (nRun.getOptions().mJson) lOutput.write("{\"recordings\":[" + lJson + "]}\n");
  return lOutput.commit() ? lExit : static_cast<int>(EXIT_FOUND);
}

}  // namespace logtool
