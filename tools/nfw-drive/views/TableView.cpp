#include "TableView.h"

#include <fmt/format.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "PlayTimeText.h"
#include "SentenceText.h"

namespace drive {

namespace {

const char* const HIDE_CURSOR = "\x1b[?25l";

winsize terminalSize() {
  winsize lSize = {};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &lSize) != 0 || lSize.ws_col == 0) lSize.ws_col = 80;
  if (lSize.ws_row < 2) lSize.ws_row = 24;
  return lSize;
}

// What a terminal would act upon, and what would need more columns than it has bytes, is shown as "?".
std::string shown(const std::string& nLine, size_t nWidth) {
  std::string lShown = nLine.substr(0, nWidth);
  std::replace_if(
      lShown.begin(), lShown.end(), [](char n) { return n < 0x20 || n > 0x7E; }, '?');
  return lShown;
}

}  // namespace

void TableView::begin() {
  if (::isatty(STDERR_FILENO) == 1) mLog.install();
  draw(HIDE_CURSOR);
}

void TableView::showDeadReckoning(std::string_view nSentence) {
  FixView::showDeadReckoning(nSentence);
  const std::string_view lKind = nSentence.substr(0, 6).substr(std::min<size_t>(nSentence.size(), 3));
  const std::string_view lText = tool::withoutLineEnd(nSentence);
  if (lKind == "RMC") mReckoned[0] = lText;
  if (lKind == "GGA") mReckoned[1] = lText;
}

void TableView::end() {
  draw(SHOW_CURSOR);
  mLog.remove();
}

// While the terminal has not taken the last picture there is no new one.
void TableView::tick() {
  if (mIsReplay) lookAtReplay();
  if (mOutput.isEmpty()) draw("");
}

void TableView::lookAtReplay() {
  const nfw::LogPlayPosition lAt = mPlayback.position();
  if (lAt.mLengthMs == 0) return;  // over
  mReplayText =
      fmt::format("{} of {}   rate {:g}{}", tool::playTimeText(lAt.mPositionMs), tool::playTimeText(lAt.mLengthMs),
                  lAt.mRate / 1000.0, lAt.mIsPaused ? "   paused: space, . step, q" : "");
}

// A line more than fits would scroll, and the next picture would begin in the wrong place.
void TableView::draw(const char* npEnd) {
  const winsize lSize = terminalSize();
  std::vector<std::string> lLines = picture();
  lLines.resize(std::min<size_t>(lLines.size(), lSize.ws_row - 1u));
  std::string lText;
  if (mDrawn > 0) lText = fmt::format("\x1b[{}A", std::min<size_t>(mDrawn, lSize.ws_row - 1u));
  lText += "\r";
  for (const std::string& lLine : lLines) lText += shown(lLine, lSize.ws_col - 1u) + "\x1b[K\n";
  mOutput.write(lText + "\x1b[J" + npEnd);
  mOutput.flush();
  mDrawn = lLines.size();
}

std::vector<std::string> TableView::picture() const {
  const nfw::GgaSentence& lGga = mFix.getGga();
  std::vector<std::string> lLines = {
      "nfw-drive    " + mSource,
      "Time         " + mFix.time(),
      fmt::format("Position     {}   altitude {}", mFix.position(), mFix.altitude()),
      fmt::format("Speed        {}   course {}", mFix.speed(), mFix.course()),
      fmt::format("Fix          {}   {}", mFix.fix(), mFix.dops()),
      fmt::format("Satellites   {} used; in view {}", lGga.satelliteCount, mFix.satellites()),
      fmt::format("Sentences    {} delivered: {}", mProgress.mSentences.load(), kinds()),
      "Rejected     " + rejects(),
  };
  if (mIsReplay) lLines.insert(lLines.begin() + 1, "Replay       " + mReplayText);
  if (mShowsDeadReckoning) {
    lLines.push_back("Reckoned     " + mReckoned[0]);
    lLines.push_back("             " + mReckoned[1]);
  }
  for (const std::string& lLine : mLog.lines()) lLines.push_back("  " + lLine);
  return lLines;
}

std::string TableView::kinds() const {
  std::string lText;
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    lText += fmt::format("{} {}  ", tool::kindName(i), mProgress.mDelivered.get(i));
  }
  return lText;
}

std::string TableView::rejects() const {
  std::string lText = fmt::format("{}", mProgress.rejected());
  for (int i = tool::LINE_NOISE; i < tool::LINE_VERDICT_NUM; ++i) {
    const auto lVerdict = static_cast<tool::LineVerdict>(i);
    const uint64_t lCount = mProgress.mLines.get(lVerdict);
    if (lCount > 0) lText += fmt::format("  {} {}", tool::lineVerdictName(lVerdict), lCount);
  }
  return mProgress.mUnparsable.total() > 0 ? lText + "  " + mProgress.unparsableText() : lText;
}

}  // namespace drive
