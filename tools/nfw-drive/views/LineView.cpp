#include "LineView.h"

#include <fmt/format.h>

#include "SentenceTime.h"

namespace drive {

void LineView::showRaw(std::string_view nSentence) {
  const int64_t lTime = tool::sentenceTime(nSentence);
  if (mTime >= 0 && lTime >= 0 && lTime != mTime) endEpoch();
  if (lTime >= 0) mTime = lTime;
  FixView::showRaw(nSentence);
}

void LineView::showDeadReckoning(std::string_view nSentence) {
  FixView::showDeadReckoning(nSentence);
  if (mShowsDeadReckoning) {
    mOutput.write("dead reckoning  " + std::string(nSentence));
    if (mIsPrompt) mOutput.flush();
  }
  const int64_t lTime = tool::sentenceTime(nSentence);
  if (lTime >= 0) mReckonedTime = lTime;
  if (!mAwaited || mReckonedTime != mAwaitedTime) return;
  mAwaited->takeReckoned(nSentence);
  if (nSentence.substr(0, 5) == "$PUBX") writeAwaited();
}

void LineView::end() {
  writeAwaited();
  if (mTime >= 0) writeEpoch(mFix);
  mOutput.flush();
}

void LineView::endEpoch() {
  writeAwaited();
  if (!mFix.isReckoned() || mReckonedTime == mTime) return writeEpoch(mFix);
  mAwaitedTime = mTime;
  mAwaited = mFix;
}

void LineView::writeAwaited() {
  if (mAwaited) writeEpoch(*mAwaited);
  mAwaited.reset();
}

void LineView::writeEpoch(const FixState& nFix) {
  mOutput.write(fmt::format("{}  {}  {}  {}  {}  {} satellites\n", nFix.time(), nFix.position(), nFix.speed(),
                            nFix.course(), nFix.fix(), nFix.getGga().satelliteCount));
  if (mIsPrompt) mOutput.flush();
}

}  // namespace drive
