#include <gtest/gtest.h>

#include "LiveLayout.h"

namespace {

using drive::Page;

drive::LiveState drive29() {
  drive::LiveState lState;
  lState.mHasKeys = true;
  lState.mSource = "sim";
  lState.mTime = lState.mSkyTime = "2026-01-31T08:00:05.000Z";
  lState.mFix = "3D";
  lState.mQuality = "gps";
  lState.mReceived = {35.65784581, 139.74516382, 42.13, 8.3, 154.2};
  lState.mReckoned = lState.mReceived;
  lState.mReckoned->mLatitude += 0.001;
  lState.mIsReckonedOfEpoch = true;
  lState.mUsed = 26;
  for (int i = 1; i <= 29; ++i) lState.mSatellites.push_back({"GPS", i, 45, 300, i == 29 ? -1 : 50, i < 27});
  lState.mSentences = 102;
  lState.mKinds = "GGA 1000000 GLL 1000000 GSA 1000000 GSV 1000000 RMC 1000000 VTG 1000000 ZDA 1000000 ";
  lState.mRejects = "0";
  lState.mLogs = {{"Data log", 196, 3, 22461}};
  lState.mLogLines = {"INF first", "30 x ERR \x1b[2Jlast"};
  return lState;
}

// Whatever the size is, nothing is wider or higher; what matters most stays longest.
TEST(LiveLayout, fitsEverySize) {
  const struct {
    size_t mWidth, mHeight;
    Page mPage;
    std::vector<const char*> mTexts;
  } CASES[] = {
      {200,
       60,
       Page::OVERVIEW,
       {"nfw-drive  sim", " ZDA 1000000", "111.2 m apart", " GPS      29 45 300  - ", "30 x ERR ?[2Jlast"}},
      {80,
       24,
       Page::OVERVIEW,
       {"*GPS       1 45 300 50 ####", "7 more: s shows", "GSV 1000000 RMC~\n", "196 recorded, 3 lost"}},
      {80, 24, Page::SATELLITES, {"26 used of 29", " GPS      29", " q quit  s satellites  l log  k keep"}},
      {80, 24, Page::LOG, {"INF first\n30 x ERR ?[2Jlast"}},
      {40,
       10,
       Page::OVERVIEW,
       {"08:00:05.000Z", "Pos  35.6578458 139.7451638", "Rec  196 recorded, 3 lost", "DR   35.6588"}},
      {40, 10, Page::SATELLITES, {" 24 more\n"}},
      {20, 5, Page::OVERVIEW, {"Lat  35.6578458", "Lon  139.7451638", "Fix  3D fix"}},
      {8, 2, Page::SATELLITES, {"Lat  35~", "Lon  13~"}},
      {1, 1, Page::LOG, {}},
  };
  drive::LiveState lState = drive29();
  for (const auto& lCase : CASES) {
    lState.mPage = lCase.mPage;
    const std::vector<drive::PictureRow> lRows = drive::layOut(lState, lCase.mWidth, lCase.mHeight);
    std::string lText;
    for (const drive::PictureRow& lRow : lRows) {
      EXPECT_LE(lRow.text().size(), lCase.mWidth) << lRow.text();
      lText += lRow.text() + "\n";
    }
    EXPECT_LE(lRows.size(), lCase.mHeight);
    for (const char* const lpText : lCase.mTexts) EXPECT_NE(lText.find(lpText), std::string::npos) << lpText << lText;
  }
}

// Each of several sources has a row: the one that is silent, too.
TEST(LiveLayout, showsSourcesBesideOneAnother) {
  drive::LiveState lState = drive29();
  lState.mSources = {{"roof", "", "3D", "08:00", lState.mReceived, 0, 100, 0},
                     {"dash", "", "2D", "08:00", *lState.mReckoned, 7, 90, 3},
                     {"boot", "broken", "none", "", {}, 9, 0, 0}};
  std::string lText;
  for (const drive::PictureRow& lRow : drive::layOut(lState, 100, 24)) lText += lRow.text() + "\n";
  for (const char* const lpRow :
       {"\nroof         3D fix  35.6578458 139.7451638   100 read\n",
        "\ndash         silent for 7 s   2D fix  35.6588458 139.7451638   111.2 m apart   90 read, 3 rejected\n",
        "\nboot         broken   no fix   0 read\n"}) {
    EXPECT_NE(lText.find(lpRow), std::string::npos) << lpRow << lText;
  }
}

TEST(LiveLayout, noSizeBreaksIt) {
  drive::LiveState lState = drive29();
  for (size_t i = 0; i < 3 * 60 * 30; ++i) {
    lState.mPage = static_cast<Page>(i % 3);
    const size_t lWidth = i / 3 % 60 * 3, lHeight = i / 180;
    const std::vector<drive::PictureRow> lRows = drive::layOut(lState, lWidth, lHeight);
    EXPECT_LE(lRows.size(), lHeight);
    for (const drive::PictureRow& lRow : lRows) EXPECT_LE(lRow.text().size(), lWidth);
  }
}

}  // namespace
