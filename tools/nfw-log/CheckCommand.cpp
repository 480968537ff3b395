#include <array>

#include "Commands.h"
#include "JsonObject.h"
#include "Messages.h"
#include "OutputFile.h"
#include "ProblemReport.h"
#include "RecordJudge.h"

namespace logtool {

namespace {

const uint64_t MAX_LISTED = 100;  // of a kind: what is damaged everywhere would fill a disk with its findings

struct FindingKind {
  const char* mpKey;
  const char* mpText;
};
const FindingKind KINDS[] = {{"bounds", "of damaged bytes"},
                             {"content", "of records that do not hold what their id says"},
                             {"time", "of records without a date and time"},
                             {"order", "of ticks that go back"}};
const size_t KIND_NUM = std::size(KINDS);

/// Writes what is wrong as it is found, in lines or as the elements of a JSON list.
class Findings : public Problems {
 public:
  Findings(OutputFile& nOutput, bool nJson) : mOutput(nOutput), mJson(nJson) {
    if (mJson) mOutput.write("{\"findings\":[");
  }

  void onDamage(const std::string& nPath, const tool::RecordDamage& nDamage) override {
    ++mCount;
    mBytes += nDamage.mLength;
    if (++mCounts[nDamage.mKind] > MAX_LISTED) return;
    if (!mJson) return mOutput.write(damageText(nPath, nDamage) + "\n");
    std::string lText = mCount > 1 ? ",\n" : "\n";
    damageJson(nPath, nDamage, &lText);
    mOutput.write(lText);
  }
  void onUnreadable(const std::string& nPath, const std::string& nReason) override {
    mHasUnreadable = true;
    tell("{}: {}", nPath, nReason);
  }

  void end(uint64_t nFiles, uint64_t nRecords) { mJson ? endJson(nFiles, nRecords) : endText(nFiles, nRecords); }

  bool hasUnreadable() const { return mHasUnreadable; }
  bool isEmpty() const { return mCount == 0; }

 private:
  uint64_t unlistedOf(size_t nKind) const { return mCounts[nKind] > MAX_LISTED ? mCounts[nKind] - MAX_LISTED : 0; }

  void endText(uint64_t nFiles, uint64_t nRecords) {
    for (size_t i = 0; i < KIND_NUM; ++i) {
      if (unlistedOf(i) > 0)
        mOutput.write(fmt::format("{} {}\n", countText(unlistedOf(i), "more finding"), KINDS[i].mpText));
    }
    mOutput.write(fmt::format("{}, {}, {} of {}\n", countText(nFiles, "file"), countText(nRecords, "whole record"),
                              countText(mCount, "finding"), countText(mBytes, "byte")));
  }

  void endJson(uint64_t nFiles, uint64_t nRecords) {
    std::string lText =
        fmt::format("],\n\"files\":{},\"records\":{},\"finding_count\":{},\"bytes\":{},\"unlisted\":", nFiles, nRecords,
                    mCount, mBytes);
    {
      tool::JsonObject lUnlisted(&lText);
      for (size_t i = 0; i < KIND_NUM; ++i) lUnlisted.number(KINDS[i].mpKey, unlistedOf(i));
    }
    mOutput.write(lText + "}\n");
  }

  OutputFile& mOutput;
  const bool mJson;
  uint64_t mCount = 0;
  uint64_t mBytes = 0;
  std::array<uint64_t, KIND_NUM> mCounts{};
  bool mHasUnreadable = false;
};

/// What a whole record may have wrong: itself, or its place in the order.
class RecordCheck {
 public:
  explicit RecordCheck(Findings& nFindings) : mFindings(nFindings) {}

  void check(const RecordingReader& nReader, const tool::Record& nRecord) {
    if (nReader.getFileNo() != mFileNo) mTimeline = {};  // the recorder may have started anew
    mFileNo = nReader.getFileNo();
    const uint32_t lBefore = mTick;
    mTick = nRecord.mTick;
    mTimeline.step(nRecord.mTick);
    // Recordings follow each other in one file of a sensor log, never in one of a log.
    if (mTimeline.isBackward() && nRecord.mKind == tool::LOG_RECORD) {
      mFindings.onDamage(nReader.getPath(),
                         {nRecord.mOffset, nRecord.mWholeSize, fmt::format("a tick of {} or more", lBefore),
                          std::to_string(nRecord.mTick), tool::RecordDamage::ORDER});
    }
    tool::RecordDamage lFault;
    if (!mJudge.accepts(nRecord, &lFault)) mFindings.onDamage(nReader.getPath(), lFault);
  }

 private:
  Findings& mFindings;
  Timeline mTimeline;
  RecordJudge mJudge;
  size_t mFileNo = 0;
  uint32_t mTick = 0;
};

}  // namespace

int runCheck(Run& nRun) {
  OutputFile lOutput;
  if (!lOutput.open("-", false, {})) return EXIT_FOUND;
  Findings lFindings(lOutput, nRun.getOptions().mJson);
  uint64_t lRecords = 0;
  size_t lFiles = 0;
  for (const Recording& lRecording : nRun.getRecordings()) {
    RecordCheck lCheck(lFindings);
    lFiles += lRecording.mPaths.size();
    nRun.read(lRecording, lFindings, [&](const RecordingReader& nReader, const tool::Record& nRecord) {
      ++lRecords;
      lCheck.check(nReader, nRecord);
      return true;
    });
  }
  lFindings.end(lFiles, lRecords);
  if (!lOutput.commit()) return EXIT_FOUND;
  if (lFindings.hasUnreadable()) return EXIT_TROUBLE;
  return lFindings.isEmpty() ? EXIT_DONE : EXIT_FOUND;
}

}  // namespace logtool
