#include "Summary.h"

#include <cstring>

#include "Format.h"
#include "JsonObject.h"

namespace drive {

namespace {

using tool::JsonObject;

void addKinds(const Progress& nProgress, JsonObject& nSummary) {
  JsonObject lKinds(nSummary.key("kinds"));
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    JsonObject lKind(lKinds.key(tool::kindName(i)));
    lKind.number("accepted", nProgress.mAccepted.get(i));
    lKind.number("unparsable", nProgress.mUnparsable.get(i));
    lKind.number("expected", nProgress.mExpected.get().mRecords[static_cast<size_t>(i)]);
    lKind.number("delivered", nProgress.mDelivered.get(i));
  }
}

void addRejected(const Progress& nProgress, JsonObject& nSummary) {
  JsonObject lRejected(nSummary.key("rejected"));
  for (int i = tool::LINE_NOISE; i < tool::LINE_VERDICT_NUM; ++i) {
    const auto lVerdict = static_cast<tool::LineVerdict>(i);
    lRejected.number(tool::lineVerdictName(lVerdict), nProgress.mLines.get(lVerdict));
  }
  lRejected.number("unparsable", nProgress.mUnparsable.total());
}

void addPhases(const PhaseDriver& nPhases, JsonObject& nSummary) {
  JsonObject lPhases(nSummary.key("phases_ms"));
  for (int i = 0; i < PHASE_NUM; ++i) {
    const auto lPhase = static_cast<Phase>(i);
    if (nPhases.isComplete(lPhase)) {
      fmt::format_to(std::back_inserter(*lPhases.key(phaseName(lPhase))), "{:.1f}", nPhases.getTime(lPhase));
    } else {
      lPhases.null(phaseName(lPhase));
    }
  }
}

std::string kindsText(const Progress& nProgress) {
  std::string lText;
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    lText += fmt::format("{} {}  ", tool::kindName(i), nProgress.mAccepted.get(i));
  }
  return lText;
}

std::string rejectedText(const Progress& nProgress) {
  std::string lText;
  for (int i = tool::LINE_NOISE; i < tool::LINE_VERDICT_NUM; ++i) {
    const auto lVerdict = static_cast<tool::LineVerdict>(i);
    lText += fmt::format("{} {}  ", tool::lineVerdictName(lVerdict), nProgress.mLines.get(lVerdict));
  }
  return lText + nProgress.unparsableText();
}

std::string phasesText(const PhaseDriver& nPhases) {
  std::string lText;
  for (int i = 0; i < PHASE_NUM; ++i) {
    const auto lPhase = static_cast<Phase>(i);
    if (!lText.empty()) lText += ", ";
    lText += nPhases.isComplete(lPhase) ? fmt::format("{} {:.1f} ms", phaseName(lPhase), nPhases.getTime(lPhase))
                                        : fmt::format("{} not completed", phaseName(lPhase));
  }
  return lText;
}

// Of each of several, and what any has lost.
std::string sourcesText(const Progress& nProgress) {
  std::string lText;
  for (const SourceProgress& lSource : nProgress.mSources) {
    if (nProgress.mSources.size() > 1) {
      lText += fmt::format("{:<12}{}: {}\n", "From", lSource.mAddress.mLabel, lSource.text());
    }
    if (lSource.mLost > 0) lText += fmt::format("{:<12}{}\n", "Lost", lSource.lossText());
  }
  return lText;
}

void addLost(const SourceProgress& nSource, JsonObject& nObject) {
  if (nSource.mLost > 0) nObject.number("lost_datagrams", nSource.mLost);
}

void addSources(const Progress& nProgress, JsonObject& nSummary) {
  if (nProgress.mSources.size() == 1) addLost(nProgress.mSources.front(), nSummary);
  if (nProgress.mSources.size() < 2) return;
  JsonObject lList(nSummary.key("sources"), '[');
  for (const SourceProgress& lCounts : nProgress.mSources) {
    JsonObject lSource(lList.element());
    lSource.text("name", lCounts.mAddress.mLabel);
    lSource.number("lines", lCounts.mLines.total());
    lSource.number("accepted", lCounts.accepted());
    lSource.number("rejected_total", lCounts.rejected());
    lSource.number("ignored", lCounts.ignored());
    addLost(lCounts, lSource);
    if (!lCounts.mFailure.empty()) lSource.text("failure", lCounts.mFailure);
  }
}

std::string linesText(const Progress& nProgress) {
  const tool::LineCounts& lLines = nProgress.mLines;
  return fmt::format(
      "Lines       {}\n"
      "{}"
      "Accepted    {}\n"
      "Rejected    {}\n"
      "Checksums   {} right, {} sentences without or not judged\n",
      nProgress.text(), sourcesText(nProgress), kindsText(nProgress), rejectedText(nProgress),
      lLines.get(tool::LINE_CHECKED), lLines.get(tool::LINE_UNCHECKED));
}

std::string latenessText(const Lateness& nLateness) {
  if (nLateness.isEmpty()) return {};
  return fmt::format(
      "Lateness    median {:.2f} ms, 99 % {:.2f} ms, most {:.2f} ms, too early {:.2f} ms; over after {:.3f} s\n",
      nLateness.quantile(0.5), nLateness.quantile(0.99), nLateness.quantile(1.0), nLateness.early(),
      nLateness.duration());
}

void addLateness(const Lateness& nLateness, JsonObject& nSummary) {
  if (nLateness.isEmpty()) return;
  JsonObject lLateness(nSummary.key("lateness_ms"));
  lLateness.real("median", nLateness.quantile(0.5));
  lLateness.real("p99", nLateness.quantile(0.99));
  lLateness.real("max", nLateness.quantile(1.0));
  lLateness.real("early", nLateness.early());
}

std::string logText(const char* npName, const LogReport& nLog) {
  if (!nLog.isWanted()) return {};
  const nfw::LogRecordCounts lCounts = nLog.getCounts();
  return fmt::format("{:<12}{} recorded, {} refused, {} failed; {} bytes\n", npName, lCounts.mRecorded,
                     lCounts.mRefused, lCounts.mFailed, lCounts.mBytes);
}

std::string keptText(const LogReport& nLog) {
  const unsigned int lNum = nLog.getKeptNum();
  return lNum == 0 ? "" : fmt::format("Kept        {} of these files\n", lNum);
}

std::string deletedText(const LogReport& nLog) {
  const nfw::LogRetentionCounts lCounts = nLog.getDeleted();
  if (lCounts.mDeletedNum + lCounts.mFailedNum == 0) return {};
  const std::string lText =
      fmt::format("Deleted     {} of the oldest files, {} bytes", lCounts.mDeletedNum, lCounts.mDeletedSize);
  if (lCounts.mFailedNum == 0) return lText + "\n";
  return lText + fmt::format("; {} could not be deleted: {}\n", lCounts.mFailedNum, std::strerror(lCounts.mError));
}

void addLog(const char* npName, const LogReport& nLog, JsonObject& nSummary) {
  if (!nLog.isWanted()) return;
  const nfw::LogRecordCounts lCounts = nLog.getCounts();
  JsonObject lLog(nSummary.key(npName));
  lLog.number("recorded", lCounts.mRecorded);
  lLog.number("refused", lCounts.mRefused);
  lLog.number("failed", lCounts.mFailed);
  lLog.number("bytes", lCounts.mBytes);
  if (nLog.getKeptNum() > 0) lLog.number("kept_files", nLog.getKeptNum());
  const nfw::LogRetentionCounts lDeleted = nLog.getDeleted();
  if (lDeleted.mDeletedNum + lDeleted.mFailedNum == 0) return;
  lLog.number("deleted_files", lDeleted.mDeletedNum);
  lLog.number("deleted_bytes", lDeleted.mDeletedSize);
  lLog.number("not_deleted", lDeleted.mFailedNum);
}

std::string roadsText(const Roads& nRoads) {
  std::string lText;
  for (const auto& lpRoad : nRoads.get()) {
    const RoadCounts& lCounts = lpRoad->getCounts();
    lText +=
        fmt::format("{:<12}{}: {} sentences to {} clients, {} dropped, {} sentences not taken\n", "Served",
                    lpRoad->getName(), nRoads.getSentences(), lCounts.mClients.load(), lCounts.mDropped, lCounts.mLost);
  }
  return lText;
}

void addRoads(const Roads& nRoads, JsonObject& nSummary) {
  if (nRoads.isEmpty()) return;
  JsonObject lList(nSummary.key("served"), '[');
  for (const auto& lpRoad : nRoads.get()) {
    JsonObject lRoad(lList.element());
    lRoad.text("name", lpRoad->getName());
    lRoad.number("sentences", nRoads.getSentences());
    lRoad.number("clients", lpRoad->getCounts().mClients);
    lRoad.number("dropped", lpRoad->getCounts().mDropped);
    lRoad.number("lost", lpRoad->getCounts().mLost);
  }
}

}  // namespace

std::string Summary::toText() const {
  return fmt::format(
      "Source      {}: {}\n"
      "{}"
      "Delivered   {}\n"
      "{}{}{}{}{}{}{}{}{}{}{}"
      "Phases      {}\n",
      mSource, mEnd, mHasSource ? linesText(mProgress) : "", mProgress.deliveredInAll().toText(),
      mVerdict.empty() ? "" : "Replay      " + mVerdict + "\n", latenessText(mLateness), logText("Data log", mLog),
      deletedText(mLog), keptText(mLog), logText("Sensor log", mSensorLog), deletedText(mSensorLog),
      keptText(mSensorLog), roadsText(mRoads),
      mLostLines > 0 ? fmt::format("Output      {} lines not taken\n", mLostLines) : "",
      mIsRealTime ? "Threads     with real-time priorities\n" : "", phasesText(mPhases));
}

std::string Summary::toJson() const {
  std::string lText;
  {
    JsonObject lSummary(&lText);
    lSummary.text("type", "summary");
    lSummary.text("source", mSource);
    lSummary.text("end", mEnd);
    lSummary.number("lines", mProgress.mLines.total());
    lSummary.number("accepted", mProgress.accepted());
    lSummary.number("rejected_total", mProgress.rejected());
    lSummary.number("ignored", mProgress.ignored());
    addSources(mProgress, lSummary);
    addRejected(mProgress, lSummary);
    lSummary.number("without_checksum", mProgress.mLines.get(tool::LINE_UNCHECKED));
    addKinds(mProgress, lSummary);
    lSummary.number("delivered_sentences", mProgress.deliveredInAll().mSentences.mCount);
    lSummary.number("delivered_combined", mProgress.mDelivered.get(nfw::NMEA_UNKNOWN));
    lSummary.number("delivered_dead_reckoning", mProgress.deliveredInAll().mDeadReckoning.mCount);
    if (!mVerdict.empty()) lSummary.text("replay", mVerdict);
    addLateness(mLateness, lSummary);
    if (!mLateness.isEmpty()) lSummary.real("replay_s", mLateness.duration());
    addLog("data_log", mLog, lSummary);
    addLog("sensor_log", mSensorLog, lSummary);
    addRoads(mRoads, lSummary);
    if (mLostLines > 0) lSummary.number("output_lost", mLostLines);
    lSummary.flag("real_time", mIsRealTime);
    addPhases(mPhases, lSummary);
  }
  return lText + "\n";
}

}  // namespace drive
