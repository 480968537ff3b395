#include "LiveLayout.h"

#include <algorithm>
#include <map>

#include "Format.h"
#include "GroundDistance.h"

namespace drive {

namespace {

const size_t NARROW = 50;  // columns: below that labels are short
const size_t TINY = 30;    // and below that a row holds one number

const double KMH = 3.6;
const int GOOD_SNR = 35, FAIR_SNR = 25;  // dB-Hz
const int MAX_SNR = 50;
const size_t COMPLAINTS = 10;  // of the log, that stay on the terminal
const size_t MAX_COLUMN = 44;  // columns of the screen that a column of satellites takes, at least
const size_t MIN_COLUMN = 38;
const size_t MAX_DOWN = 16;  // rows, while there is room for another column
const size_t CELL = 24;      // of these, what stands before the bar

using Rows = std::vector<PictureRow>;

/// A row, and how much it matters: the lowest is left out first.
struct Ranked {
  PictureRow mRow;
  int mRank;
};

// What a terminal would act upon, and what would need more columns than it has bytes, is shown as "?".
void printable(std::string* npText) {
  std::replace_if(
      npText->begin(), npText->end(), [](char n) { return n < 0x20 || n > 0x7E; }, '?');
}

// A number that is cut would be another one: "~" says that there is more.
void cut(PictureRow* npRow, size_t nWidth) {
  const size_t lSize = npRow->text().size();
  for (Span& lSpan : npRow->mSpans) {
    printable(&lSpan.mText);
    const bool lIsLast = nWidth > 0 && lSpan.mText.size() >= nWidth;
    lSpan.mText.resize(std::min(lSpan.mText.size(), nWidth));
    nWidth -= lSpan.mText.size();
    if (lIsLast && lSize > npRow->text().size() && !lSpan.mIsBar) lSpan.mText.back() = '~';
  }
}

PictureRow labelled(const char* npLabel, const char* npShort, size_t nWidth) {
  PictureRow lRow;
  const bool lIsNarrow = nWidth < NARROW;
  lRow.add(fmt::format("{:<{}}", lIsNarrow ? npShort : npLabel, lIsNarrow ? 5 : 13), Look::LABEL);
  return lRow;
}

bool isKnown(double nValue) { return !std::isnan(nValue); }
bool hasPosition(const FixValues& nValues) { return isKnown(nValues.mLatitude); }

std::string known(double nValue, const char* npUnit, int nDigits) {
  return isKnown(nValue) ? fmt::format("{:.{}f}{}", nValue, nDigits, npUnit) : "-";
}

Look lookOf(const std::string& nFix) {
  return nFix == "none" ? Look::BAD : nFix == "reckoned" || nFix == "2D" ? Look::FAIR : Look::GOOD;
}

std::string fixText(const LiveState& nState) {
  if (nState.mFix.empty() || nState.mFix == "none") return "no fix";
  return nState.mFix == "fix" ? "fix" : nState.mFix + (nState.mFix == "reckoned" ? "" : " fix");
}

PictureRow title(const LiveState& nState, size_t nWidth) {
  const std::string lAlarm = nState.mSilence > 0 ? fmt::format("silent for {} s  ", nState.mSilence) : "";
  const size_t lDay = nWidth < NARROW ? nState.mTime.find('T') + 1 : 0;  // npos + 1 is 0
  const std::string lRight = lAlarm + (nState.mTime.empty() ? "no sentence yet" : nState.mTime.substr(lDay));
  const std::string lLeft = nWidth < NARROW ? "" : " nfw-drive  " + nState.mSource;
  const size_t lRoom = nWidth > lRight.size() + 2 ? nWidth - lRight.size() - 2 : 0;
  PictureRow lRow;
  lRow.add(fmt::format("{:<{}} {} ", lLeft.substr(0, lRoom), lRoom, lRight), Look::TITLE);
  return lRow;
}

PictureRow keyBar(const LiveState& nState, size_t nWidth) {
  std::string lText = nState.mHasKeys ? " q quit  s satellites  l log" : " Ctrl-C quits";
  if (nState.mHasKeys && nState.mIsReplay) lText += "  space pause  . step  <-> 10 s  up/down rate";
  if (nState.mHasKeys && !nState.mLogs.empty()) lText += "  k keep";
  PictureRow lRow;
  lRow.add(fmt::format("{:<{}}", lText, nWidth), Look::TITLE);
  return lRow;
}

// ---- the fix -------------------------------------------------------------------------------------------------------

void addPosition(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  const FixValues& lValues = nState.mReceived;
  if (!hasPosition(lValues)) {
    npRows->push_back({labelled("Position", "Pos", nWidth).add("no position", Look::BAD), 90});
    return;
  }
  if (nWidth < TINY) {
    npRows->push_back({labelled("", "Lat", nWidth).add(known(lValues.mLatitude, "", 7), Look::STRONG), 91});
    npRows->push_back({labelled("", "Lon", nWidth).add(known(lValues.mLongitude, "", 7), Look::STRONG), 90});
    return;
  }
  PictureRow lRow = labelled("Position", "Pos", nWidth);
  lRow.add(fmt::format("{:.7f} {:.7f}", lValues.mLatitude, lValues.mLongitude), Look::STRONG);
  lRow.add("   altitude " + known(lValues.mAltitude, " m", 1));
  if (isKnown(lValues.mHorizontalAccuracy)) {
    lRow.add(fmt::format("   within {}", known(lValues.mHorizontalAccuracy, " m", 1)));
  }
  npRows->push_back({lRow, 90});
}

void addMotion(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  const FixValues& lValues = nState.mReceived;
  PictureRow lRow = labelled("Speed", "Spd", nWidth);
  lRow.add(isKnown(lValues.mSpeed) ? known(lValues.mSpeed * KMH, " km/h", 1) : "no speed", Look::STRONG);
  if (nWidth < TINY) {
    npRows->push_back({lRow, 70});
    npRows->push_back({labelled("", "Crs", nWidth).add(known(lValues.mCourse, " deg", 1)), 60});
    return;
  }
  lRow.add("   course ").add(known(lValues.mCourse, " deg", 1), Look::STRONG);
  npRows->push_back({lRow, 70});
}

void addFix(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  PictureRow lRow = labelled("Fix", "Fix", nWidth);
  lRow.add(fixText(nState), lookOf(nState.mFix));
  if (!nState.mQuality.empty() && nState.mQuality != "invalid") lRow.add(", " + nState.mQuality);
  lRow.add(fmt::format("   PDOP {} HDOP {} VDOP {}", known(nState.mPdop, "", 2), known(nState.mHdop, "", 2),
                       known(nState.mVdop, "", 2)));
  npRows->push_back({lRow, 80});
}

std::string apart(const FixValues& nHere, const FixValues& nThere) {
  if (!hasPosition(nHere) || !hasPosition(nThere)) return {};
  const double lMetres = tool::groundDistance(nHere.mLatitude, nHere.mLongitude, nThere.mLatitude, nThere.mLongitude);
  return lMetres < 1000.0 ? fmt::format("   {:.1f} m apart", lMetres)
                          : fmt::format("   {:.1f} km apart", lMetres / 1000.0);
}

void addReckoned(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  if (!nState.mReckoned) return;
  const FixValues& lValues = *nState.mReckoned;
  const int lRank = hasPosition(nState.mReceived) ? 65 : 85;
  if (nWidth < TINY) {
    npRows->push_back({labelled("", "DLat", nWidth).add(known(lValues.mLatitude, "", 7), Look::FAIR), lRank});
    npRows->push_back({labelled("", "DLon", nWidth).add(known(lValues.mLongitude, "", 7), Look::FAIR), lRank});
    return;
  }
  PictureRow lRow = labelled("Reckoned", "DR", nWidth);
  lRow.add(fmt::format("{} {}", known(lValues.mLatitude, "", 7), known(lValues.mLongitude, "", 7)), Look::FAIR);
  if (nState.mIsReckonedOfEpoch) lRow.add(apart(nState.mReceived, lValues));
  lRow.add(fmt::format("   {}   {}", known(lValues.mSpeed * KMH, " km/h", 1), known(lValues.mCourse, " deg", 1)));
  npRows->push_back({lRow, lRank});
}

void addTime(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  if (nState.mTime.empty()) return;
  npRows->push_back({labelled("Time", "Time", nWidth).add(nState.mTime), 35});
}

void addReplay(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  if (nState.mIsReplay) npRows->push_back({labelled("Replay", "Play", nWidth).add(nState.mReplay), 50});
}

// How far from the first one, where both tell it of the same time.
std::string distanceText(const LiveState::Source& nFirst, const LiveState::Source& nOther) {
  if (&nFirst == &nOther || nFirst.mTime != nOther.mTime) return {};
  return apart(nFirst.mReceived, nOther.mReceived);
}

void addSource(const LiveState& nState, const LiveState::Source& nSource, size_t nWidth, std::vector<Ranked>* npRows) {
  PictureRow lRow;
  const size_t lRoom = nWidth < NARROW ? 4 : 12;
  lRow.add(fmt::format("{:<{}} ", nSource.mName.substr(0, lRoom), lRoom), Look::LABEL);
  if (!nSource.mTrouble.empty()) lRow.add(nSource.mTrouble + "   ", Look::BAD);
  if (nSource.mSilence > 0 && nSource.mTrouble.empty()) {
    lRow.add(fmt::format("silent for {} s   ", nSource.mSilence), Look::BAD);
  }
  const std::string lFix = nSource.mTime.empty() ? "none" : nSource.mFix;
  lRow.add(lFix == "none" ? "no fix" : lFix == "fix" ? lFix : lFix + " fix", lookOf(lFix));
  if (hasPosition(nSource.mReceived)) {
    lRow.add(fmt::format("  {:.7f} {:.7f}", nSource.mReceived.mLatitude, nSource.mReceived.mLongitude));
  }
  lRow.add(distanceText(nState.mSources.front(), nSource));
  lRow.add(fmt::format("   {} read", nSource.mRead));
  if (nSource.mRejected > 0) lRow.add(fmt::format(", {} rejected", nSource.mRejected), Look::FAIR);
  npRows->push_back({lRow, nSource.mTrouble.empty() && nSource.mSilence == 0 ? 62 : 72});
}

// ---- what was counted ----------------------------------------------------------------------------------------------

// Some receivers count none in GGA, and name those that they use nevertheless.
int usedOf(const LiveState& nState) {
  if (nState.mUsed > 0) return nState.mUsed;
  const auto lIsUsed = [](const Sky::Satellite& n) { return n.mIsUsed; };
  return static_cast<int>(std::count_if(nState.mSatellites.begin(), nState.mSatellites.end(), lIsUsed));
}

std::string counted(uint64_t nNumber, const char* npWhat) {
  return fmt::format("{} {}{}", nNumber, npWhat, nNumber == 1 ? "" : "s");
}

std::string skyText(const LiveState& nState) {
  if (nState.mSatellites.empty()) return nState.mUsed < 0 ? "none told" : fmt::format("{} used", nState.mUsed);
  std::map<std::string_view, int> lSystems;
  for (const Sky::Satellite& lSatellite : nState.mSatellites) ++lSystems[lSatellite.mSystem];
  std::string lText = fmt::format("{} used of {} in view:", usedOf(nState), nState.mSatellites.size());
  for (const Sky::Satellite& lSatellite : nState.mSatellites) {
    const auto lFound = lSystems.find(lSatellite.mSystem);
    if (lFound == lSystems.end()) continue;
    lText += fmt::format(" {} {}", lFound->first, lFound->second);
    lSystems.erase(lFound);
  }
  return nState.mSkyTime == nState.mTime ? lText : lText + "   as of " + nState.mSkyTime;
}

void addCounts(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  npRows->push_back(
      {labelled("Sentences", "Sent", nWidth).add(fmt::format("{} delivered: {}", nState.mSentences, nState.mKinds)),
       30});
  PictureRow lRejected = labelled("Rejected", "Rej", nWidth);
  lRejected.add(nState.mRejects, nState.mRejected > 0 ? Look::FAIR : Look::PLAIN);
  npRows->push_back({lRejected, 25});
  for (const LiveState::Log& lLog : nState.mLogs) {
    PictureRow lRow = labelled(lLog.mName.c_str(), "Rec", nWidth);
    lRow.add(fmt::format("{} recorded, ", lLog.mRecorded));
    lRow.add(fmt::format("{} lost", lLog.mMissing), lLog.mMissing > 0 ? Look::BAD : Look::PLAIN);
    lRow.add(fmt::format("; {} bytes", lLog.mBytes));
    npRows->push_back({lRow, lLog.mMissing > 0 ? 75 : 55});
  }
  PictureRow lLog = labelled("Log", "Log", nWidth);
  lLog.add(counted(nState.mErrors, "error"), nState.mErrors > 0 ? Look::BAD : Look::PLAIN);
  lLog.add(", " + counted(nState.mWarnings, "warning"), nState.mWarnings > 0 ? Look::FAIR : Look::PLAIN);
  lLog.add(", " + counted(nState.mOthers, "other line"));
  npRows->push_back({lLog, nState.mErrors > 0 ? 52 : 28});
}

// ---- the satellites ------------------------------------------------------------------------------------------------

std::string number(int nValue, int nWidth) {
  return nValue < 0 ? fmt::format("{:>{}}", "-", nWidth) : fmt::format("{:>{}}", nValue, nWidth);
}

Look lookOf(const Sky::Satellite& nSatellite) {
  if (nSatellite.mSnr >= GOOD_SNR) return Look::GOOD;
  return nSatellite.mSnr >= FAIR_SNR ? Look::FAIR : Look::BAD;
}

void addCell(const Sky::Satellite& nSatellite, size_t nWidth, PictureRow* npRow) {
  npRow->add(
      fmt::format("{}{:<7} {} {} {} {} ", nSatellite.mIsUsed ? '*' : ' ', nSatellite.mSystem, number(nSatellite.mId, 3),
                  number(nSatellite.mElevation, 2), number(nSatellite.mAzimuth, 3), number(nSatellite.mSnr, 2)),
      nSatellite.mIsUsed ? Look::STRONG : Look::FAINT);
  const size_t lRoom = nWidth > CELL ? nWidth - CELL : 0;
  const auto lSnr = static_cast<size_t>(std::clamp(nSatellite.mSnr, 0, MAX_SNR));
  const size_t lBar = (lSnr * lRoom + MAX_SNR - 1) / MAX_SNR;
  npRow->addBar(lBar, lookOf(nSatellite));
  npRow->add(std::string(lRoom - lBar, ' '));
}

PictureRow tableHead(size_t nColumns, size_t nWidth) {
  PictureRow lRow;
  for (size_t i = 0; i < nColumns; ++i) {
    lRow.add(fmt::format("{:<{}}", " System   Id El Azi SNR", nWidth), Look::LABEL);
    if (i + 1 < nColumns) lRow.add("  ");
  }
  return lRow;
}

// Down the columns, as one reads a list. What has no room is told in the last row.
Rows satelliteTable(const LiveState& nState, size_t nWidth, size_t nHeight) {
  const std::vector<Sky::Satellite>& lAll = nState.mSatellites;
  if (lAll.empty() || nHeight < 2) return {};
  const size_t lMost = std::max<size_t>(1, (nWidth + 2) / (MIN_COLUMN + 2));
  const size_t lWanted = (lAll.size() + nHeight - 2) / (nHeight - 1);
  const size_t lColumns = std::min(std::max(lWanted, (lAll.size() + MAX_DOWN - 1) / MAX_DOWN), lMost);
  const size_t lColumn = std::min(nWidth, std::max(MIN_COLUMN, std::min((nWidth + 2) / lColumns - 2, MAX_COLUMN)));
  size_t lDown = (lAll.size() + lColumns - 1) / lColumns;
  const bool lIsCut = lDown > nHeight - 1;
  if (lIsCut) lDown = nHeight - 2;
  Rows lRows = {tableHead(lColumns, lColumn)};
  for (size_t i = 0; i < lDown; ++i) {
    lRows.emplace_back();
    for (size_t k = i; k < std::min(lAll.size(), lColumns * lDown); k += lDown) {
      if (k != i) lRows.back().add("  ");
      addCell(lAll[k], lColumn, &lRows.back());
    }
  }
  if (!lIsCut) return lRows;
  lRows.emplace_back();
  lRows.back().add(fmt::format(" {} more{}", lAll.size() - lColumns * lDown,
                               nState.mPage == Page::OVERVIEW && nState.mHasKeys ? ": s shows them" : ""),
                   Look::FAINT);
  return lRows;
}

// ---- pages ---------------------------------------------------------------------------------------------------------

// "30 x ERR ..." is of its kind, too.
Look lookOfLine(const std::string& nLine) {
  const std::string lStart = nLine.substr(0, 24);
  if (lStart.find("ERR ") != std::string::npos) return Look::BAD;
  return lStart.find("WRN ") != std::string::npos ? Look::FAIR : Look::PLAIN;
}

Rows logTail(const LiveState& nState, size_t nHeight) {
  Rows lRows;
  const std::vector<std::string>& lLines = nState.mLogLines;
  for (size_t i = lLines.size() - std::min(lLines.size(), nHeight); i < lLines.size(); ++i) {
    lRows.emplace_back();
    lRows.back().add(lLines[i], lookOfLine(lLines[i]));
  }
  return lRows;
}

PictureRow skyRow(const LiveState& nState, size_t nWidth) {
  return labelled("Satellites", "Sats", nWidth).add(skyText(nState));
}

void addWhereItIs(const LiveState& nState, size_t nWidth, std::vector<Ranked>* npRows) {
  addPosition(nState, nWidth, npRows);
  addMotion(nState, nWidth, npRows);
  addFix(nState, nWidth, npRows);
  addReckoned(nState, nWidth, npRows);
}

std::vector<Ranked> facts(const LiveState& nState, size_t nWidth) {
  std::vector<Ranked> lRows;
  addReplay(nState, nWidth, &lRows);
  addWhereItIs(nState, nWidth, &lRows);
  for (const LiveState::Source& lSource : nState.mSources) addSource(nState, lSource, nWidth, &lRows);
  addCounts(nState, nWidth, &lRows);
  lRows.push_back({skyRow(nState, nWidth), 58});
  return lRows;
}

Rows rowsOf(std::vector<Ranked> nRanked) {
  Rows lRows;
  for (Ranked& lRanked : nRanked) lRows.push_back(std::move(lRanked.mRow));
  return lRows;
}

void keepWhatMatters(size_t nMost, std::vector<Ranked>* npRows) {
  while (npRows->size() > nMost) {
    const auto lLess = [](const Ranked& nLeft, const Ranked& nRight) { return nLeft.mRank < nRight.mRank; };
    npRows->erase(std::min_element(npRows->begin(), npRows->end(), lLess));
  }
}

void append(Rows nMore, Rows* npRows) {
  for (PictureRow& lRow : nMore) npRows->push_back(std::move(lRow));
}

Rows overview(const LiveState& nState, size_t nWidth, size_t nHeight) {
  std::vector<Ranked> lFacts = facts(nState, nWidth);
  keepWhatMatters(nHeight, &lFacts);
  Rows lRows = rowsOf(std::move(lFacts));
  append(satelliteTable(nState, nWidth, nHeight - lRows.size()), &lRows);
  const size_t lRest = nHeight - lRows.size();
  if (lRest < 3 || nState.mLogLines.empty()) return lRows;
  lRows.emplace_back();
  append(logTail(nState, lRest - 1), &lRows);
  return lRows;
}

Rows page(const LiveState& nState, size_t nWidth, size_t nHeight) {
  if (nState.mPage == Page::LOG) return logTail(nState, nHeight);
  if (nState.mPage == Page::OVERVIEW || nHeight < 3) return overview(nState, nWidth, nHeight);
  Rows lRows = {skyRow(nState, nWidth)};
  append(satelliteTable(nState, nWidth, nHeight - 1), &lRows);
  return lRows;
}

}  // namespace

std::vector<PictureRow> layOut(const LiveState& nState, size_t nWidth, size_t nHeight) {
  const bool lHasBar = nHeight >= 8;
  const size_t lTitle = nHeight >= 4 ? 1 : 0;
  const size_t lMiddle = nHeight - lTitle - (lHasBar ? 1 : 0);
  Rows lRows;
  if (lTitle > 0) lRows.push_back(title(nState, nWidth));
  append(page(nState, nWidth, lMiddle), &lRows);
  if (lHasBar) {
    lRows.resize(nHeight - 1);
    lRows.push_back(keyBar(nState, nWidth));
  }
  for (PictureRow& lRow : lRows) cut(&lRow, nWidth);
  return lRows;
}

std::vector<PictureRow> layOutRest(const LiveState& nState, size_t nWidth) {
  std::vector<Ranked> lFacts;
  addTime(nState, nWidth, &lFacts);
  addWhereItIs(nState, nWidth, &lFacts);
  Rows lRows = rowsOf(std::move(lFacts));
  lRows.push_back(skyRow(nState, nWidth));
  Rows lComplaints = logTail(nState, nState.mLogLines.size());
  const auto lIsPlain = [](const PictureRow& nRow) { return nRow.mSpans.front().mLook == Look::PLAIN; };
  lComplaints.erase(std::remove_if(lComplaints.begin(), lComplaints.end(), lIsPlain), lComplaints.end());
  lComplaints.erase(lComplaints.begin(),
                    lComplaints.end() - static_cast<long>(std::min(lComplaints.size(), COMPLAINTS)));
  append(std::move(lComplaints), &lRows);
  for (PictureRow& lRow : lRows) cut(&lRow, nWidth);
  return lRows;
}

}  // namespace drive
