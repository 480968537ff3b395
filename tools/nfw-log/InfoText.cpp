#include "InfoText.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>

#include "Format.h"
#include "JsonObject.h"
#include "Messages.h"
#include "PrintableText.h"
#include "ProblemReport.h"
#include "Progress.h"

namespace logtool {

namespace {

using tool::JsonObject;

const size_t SHOWN = 5;  // entries of a list in the text
const char* const MARGIN = "            ";

const char* kindText(tool::RecordKind nKind) {
  static const char* const NAMES[] = {"nothing", "log", "sensor log"};
  return NAMES[nKind];
}

/// A pipe has no size.
void addSize(const std::string& nPath, JsonObject& nFile) {
  struct stat lStat = {};
  const int lResult = nPath == "-" ? ::fstat(STDIN_FILENO, &lStat) : ::stat(nPath.c_str(), &lStat);
  if (lResult != 0 || !S_ISREG(lStat.st_mode)) return nFile.null("size");
  nFile.number("size", static_cast<uint64_t>(lStat.st_size));
}

// A second; NAN where no time has passed that would tell.
double rate(uint64_t nRecords, const RecordingStats& nStats) {
  const uint64_t lMs = nStats.mTimeline.getElapsedMs();
  return lMs == 0 ? NAN : static_cast<double>(nRecords) * 1000.0 / static_cast<double>(lMs);
}

std::string rateText(uint64_t nRecords, const RecordingStats& nStats) {
  const double lRate = rate(nRecords, nStats);
  return std::isnan(lRate) ? "" : fmt::format(", {:.1f} a second", lRate);
}

std::string timeLine(const char* npTitle, int64_t nTime, uint32_t nTick, const RecordingStats& nStats) {
  if (nStats.mRecords == 0) return fmt::format("{:<12}-\n", npTitle);
  const char* const lpClock = nStats.mKind == tool::SENSOR_RECORD ? " UTC" : " local time";
  return fmt::format("{:<12}{}{}, tick {}\n", npTitle, timeText(nTime), nTime == NO_TIME ? "" : lpClock, nTick);
}

// The kinds that come most, first.
std::vector<IdStats::Type> typesOf(const IdStats& nId) {
  std::vector<IdStats::Type> lTypes = nId.getTypes();
  std::stable_sort(lTypes.begin(), lTypes.end(), [](const IdStats::Type& nLeft, const IdStats::Type& nRight) {
    return nLeft.mCount > nRight.mCount;
  });
  return lTypes;
}

std::string idText(const std::string& nName, const IdStats& nId, const RecordingStats& nStats) {
  std::string lText = fmt::format("Id {:<9}{}, {}{}: ", nName, countText(nId.getRecords(), "record"),
                                  sizeText(nId.getBytes()), rateText(nId.getRecords(), nStats));
  for (const IdStats::Type& lType : typesOf(nId)) lText += fmt::format(" {} {}", lType.name(), lType.mCount);
  if (nId.getOther() > 0) lText += fmt::format(" other {}", nId.getOther());
  return lText + "\n";
}

std::string breaksText(const char* npTitle, uint64_t nCount, const std::vector<RecordingStats::Break>& nBreaks) {
  std::string lText = fmt::format("{:<12}{}\n", npTitle, nCount);
  for (size_t i = 0; i < std::min(SHOWN, nBreaks.size()); ++i) {
    const RecordingStats::Break& lBreak = nBreaks[i];
    lText += fmt::format("            at {}", durationText(lBreak.mElapsedMs));
    if (lBreak.mLengthMs != Timeline::PAUSE_MS) lText += fmt::format(", {} long", durationText(lBreak.mLengthMs));
    lText += fmt::format(", {}: offset {}\n", tool::printableText(lBreak.mPath), lBreak.mOffset);
  }
  if (nCount > SHOWN) lText += fmt::format("            and {} more\n", nCount - SHOWN);
  return lText;
}

std::string damagesText(const RecordingStats& nStats) {
  std::string lText = fmt::format("{:<12}", "Damage");
  if (nStats.mDamageNum == 0) return lText + "none\n";
  lText += fmt::format("{}, {}\n", countText(nStats.mDamageNum, "place"), countText(nStats.mLostBytes, "byte"));
  for (size_t i = 0; i < std::min(SHOWN, nStats.mDamages.size()); ++i) {
    lText += "            " + damageText(nStats.mDamages[i].mPath, nStats.mDamages[i].mDamage) + "\n";
  }
  if (nStats.mDamageNum > SHOWN) lText += fmt::format("            and {} more\n", nStats.mDamageNum - SHOWN);
  return lText;
}

void addTime(const char* npKey, int64_t nTime, uint32_t nTick, const RecordingStats& nStats, JsonObject& nObject) {
  if (nStats.mRecords == 0) return nObject.null(npKey);
  JsonObject lTime(nObject.key(npKey));
  if (nTime == NO_TIME) lTime.null("time");
  if (nTime != NO_TIME) lTime.text("time", timeText(nTime));
  lTime.number("tick", nTick);
}

void addId(int nId, const IdStats& nStats, const RecordingStats& nAll, std::string* npText) {
  JsonObject lId(npText);
  lId.number("id", static_cast<uint64_t>(nId));
  lId.number("records", nStats.getRecords());
  lId.number("bytes", nStats.getBytes());
  lId.real("per_second", rate(nStats.getRecords(), nAll));
  JsonObject lTypes(lId.key("types"));
  for (const IdStats::Type& lType : typesOf(nStats)) {
    std::string lName;
    JsonObject::quote(lType.name(), &lName);
    lTypes.number(lName.substr(1, lName.size() - 2), lType.mCount);
  }
  if (nStats.getOther() > 0) lTypes.number("other", nStats.getOther());
}

void addBreaks(const char* npKey, const std::vector<RecordingStats::Break>& nBreaks, JsonObject& nObject) {
  JsonObject lList(nObject.key(npKey), '[');
  for (const RecordingStats::Break& lBreak : nBreaks) {
    JsonObject lObject(lList.element());
    lObject.text("file", lBreak.mPath);
    lObject.number("offset", lBreak.mOffset);
    lObject.number("elapsed_ms", lBreak.mElapsedMs);
    lObject.number("length_ms", lBreak.mLengthMs);
  }
}

}  // namespace

std::string infoText(const Recording& nRecording, const RecordingStats& nStats, const TrackStats& nTracks) {
  std::string lText = fmt::format("{:<12}{}\n{:<12}{}, {}, {}\n", "Recording", tool::printableText(nRecording.mName),
                                  "Kind", kindText(nStats.mKind), countText(nRecording.mPaths.size(), "file"),
                                  sizeText(nStats.mBytes + nStats.mLostBytes));
  lText += fmt::format("{:<12}{}{}\n", "Records", nStats.mRecords, rateText(nStats.mRecords, nStats));
  lText += timeLine("First", nStats.mFirstTime, nStats.mFirstTick, nStats);
  lText += timeLine("Last", nStats.mLastTime, nStats.mLastTick, nStats);
  lText += fmt::format("{:<12}{}\n", "Duration", durationText(nStats.mTimeline.getElapsedMs()));
  for (const auto& [lId, lStats] : nStats.mIds) lText += idText(std::to_string(lId), lStats, nStats);
  if (nStats.mOtherIds.getRecords() > 0) lText += idText("others", nStats.mOtherIds, nStats);
  for (const auto& lpTrack : nTracks.getTracks()) {
    lText +=
        fmt::format("{:<12}{}: {}\n", "Track", tool::printableText(lpTrack->mName), statsText(lpTrack->mStats, MARGIN));
  }
  lText += breaksText("Gaps", nStats.mGapNum, nStats.mGaps);
  lText += breaksText("Ticks back", nStats.mBackwardNum, nStats.mBackward);
  return lText + damagesText(nStats) + "\n";
}

std::string infoJson(const Recording& nRecording, const RecordingStats& nStats, const TrackStats& nTracks) {
  std::string lText;
  {
    JsonObject lInfo(&lText);
    lInfo.text("recording", nRecording.mName);
    lInfo.text("kind", kindText(nStats.mKind));
    {
      JsonObject lFiles(lInfo.key("files"), '[');
      for (const std::string& lPath : nRecording.mPaths) {
        JsonObject lFile(lFiles.element());
        lFile.text("path", lPath);
        addSize(lPath, lFile);
      }
    }
    lInfo.number("records", nStats.mRecords);
    addTime("first", nStats.mFirstTime, nStats.mFirstTick, nStats, lInfo);
    addTime("last", nStats.mLastTime, nStats.mLastTick, nStats, lInfo);
    lInfo.number("duration_ms", nStats.mTimeline.getElapsedMs());
    lInfo.real("per_second", rate(nStats.mRecords, nStats));
    {
      JsonObject lIds(lInfo.key("ids"), '[');
      for (const auto& [lId, lStats] : nStats.mIds) addId(lId, lStats, nStats, lIds.element());
    }
    {
      JsonObject lTracks(lInfo.key("tracks"), '[');
      for (const auto& lpTrack : nTracks.getTracks()) {
        JsonObject lTrack(lTracks.element());
        lTrack.text("name", lpTrack->mName);
        addStats(lpTrack->mStats, lTrack);
      }
    }
    lInfo.number("gap_count", nStats.mGapNum);
    addBreaks("gaps", nStats.mGaps, lInfo);
    lInfo.number("backward_count", nStats.mBackwardNum);
    addBreaks("backward", nStats.mBackward, lInfo);
    lInfo.number("damage_count", nStats.mDamageNum);
    lInfo.number("damaged_bytes", nStats.mLostBytes);
    JsonObject lDamages(lInfo.key("damages"), '[');
    for (const RecordingStats::Damage& lDamage : nStats.mDamages) {
      damageJson(lDamage.mPath, lDamage.mDamage, lDamages.element());
    }
  }
  return lText;
}

}  // namespace logtool
