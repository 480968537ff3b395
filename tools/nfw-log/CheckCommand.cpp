#include <fmt/format.h>

#include "JsonObject.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "Run.h"
#include "SensorContent.h"

namespace logtool {

namespace {

/// Writes what is wrong as it is found, in lines or as the elements of a JSON list.
class Findings : public Problems {
 public:
  Findings(OutputFile& nOutput, bool nJson) : mOutput(nOutput), mJson(nJson) {}

  void onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) override {
    ++mCount;
    mBytes += nDamage.mLength;
    if (!mJson) return mOutput.write(damageText(nPath, nDamage) + "\n");
    std::string lText = mCount > 1 ? ",\n" : "\n";
    damageJson(nPath, nDamage, &lText);
    mOutput.write(lText);
  }
  void onUnreadable(const std::string& nPath, const std::string& nReason) override {
    mHasUnreadable = true;
    fmt::print(stderr, "nfw-log: {}: {}\n", nPath, nReason);
  }

  uint64_t mCount = 0;
  uint64_t mBytes = 0;
  bool mHasUnreadable = false;

 private:
  OutputFile& mOutput;
  const bool mJson;
};

/// What a whole record may have wrong: its time, its place in the order, its content.
class RecordCheck {
 public:
  explicit RecordCheck(Findings& nFindings) : mFindings(nFindings) {}

  void check(const RecordingReader& nReader, const tool::Record& nRecord) {
    if (nReader.getFileNo() != mFileNo) mTimeline = {};  // the recorder may have started anew
    mFileNo = nReader.getFileNo();
    const uint32_t lBefore = mTick;
    mTick = nRecord.mTick;
    mTimeline.step(nRecord.mTick);
    if (nRecord.mKind == tool::SENSOR_RECORD) return checkContent(nReader, nRecord);
    // Recordings follow each other in one file of a sensor log, never in one of a log.
    if (mTimeline.isBackward()) {
      find(nReader, nRecord, fmt::format("a tick of {} or more", lBefore), std::to_string(nRecord.mTick));
    }
    if (mClock.timeOf(nRecord) == NO_TIME) find(nReader, nRecord, "a date and time", std::string(nRecord.mStamp));
  }

 private:
  void checkContent(const RecordingReader& nReader, const tool::Record& nRecord) {
    if (nRecord.mId > tool::SENSOR_DEAD_RECKONING_ID || nRecord.mVersion > 1) return;
    if (tool::isSensorContent(nRecord.mId, nRecord.mVersion, nRecord.mData)) return;
    const char* const lpHeld = nRecord.mId == tool::SENSOR_GNSS_ID ? "a sentence" : "a report of dead reckoning";
    find(nReader, nRecord, fmt::format("{} in version {}", lpHeld, nRecord.mVersion),
         fmt::format("{} bytes that are none", nRecord.mData.size()));
  }

  void find(const RecordingReader& nReader, const tool::Record& nRecord, const std::string& nExpected,
            const std::string& nFound) {
    mFindings.onDamage(nReader.getPath(), {nRecord.mOffset, nRecord.mWholeSize, nExpected, nFound});
  }

  Findings& mFindings;
  Timeline mTimeline;
  WallClock mClock;
  size_t mFileNo = 0;
  uint32_t mTick = 0;
};

}  // namespace

int runCheck(Run& nRun) {
  OutputFile lOutput;
  if (!lOutput.open("-", false, {})) return EXIT_FOUND;
  const bool lJson = nRun.getOptions().mJson;
  Findings lFindings(lOutput, lJson);
  uint64_t lRecords = 0;
  size_t lFiles = 0;
  if (lJson) lOutput.write("{\"findings\":[");
  for (const Recording& lRecording : nRun.getRecordings()) {
    RecordCheck lCheck(lFindings);
    lFiles += lRecording.mPaths.size();
    nRun.read(lRecording, lFindings, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
      ++lRecords;
      lCheck.check(nReader, nRecord);
      return true;
    });
  }
  lOutput.write(fmt::format(lJson ? "],\n\"files\":{},\"records\":{},\"finding_count\":{},\"bytes\":{}}}\n"
                                  : "{} files, {} whole records, {} findings of {} bytes\n",
                            lFiles, lRecords, lFindings.mCount, lFindings.mBytes));
  if (!lOutput.commit()) return EXIT_FOUND;
  if (lFindings.mHasUnreadable) return EXIT_TROUBLE;
  return lFindings.mCount > 0 ? EXIT_FOUND : EXIT_DONE;
}

}  // namespace logtool
