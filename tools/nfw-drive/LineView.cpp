#include "LineView.h"

#include <fmt/format.h>

namespace drive {

void LineView::showEpoch(const nfw::NmeaSentence& nRecord) {
  mOutput.write(fmt::format("{}  {}  {}  {}  {}  {} satellites\n", mFix.time(), mFix.position(), mFix.speed(),
                            mFix.course(), mFix.fix(), nRecord.gga.satelliteCount));
  if (mIsPrompt) mOutput.flush();
}

}  // namespace drive
