#pragma once

#include <chrono>

#include "EpochView.h"
#include "FixEpoch.h"
#include "LiveLayout.h"
#include "LogPane.h"
#include "PageSwitch.h"
#include "Playback.h"
#include "Recorder.h"
#include "Screen.h"

namespace drive {

/// The live view: the last epoch, and what a run has counted, on the whole of a terminal. In the end the last fix and
/// what the log has complained of stay there.
class LiveView : public EpochView<FixEpoch> {
 public:
  LiveView(const Options& nOptions, const ViewParts& nParts);

  void begin() override;
  void showRaw(std::string_view nSentence) override;
  void showGll(const nfw::GllSentence& nRecord) override { mState.take(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { mState.take(nRecord); }
  void tick() override;
  void end() override;

 private:
  using Clock = std::chrono::steady_clock;

  void show(const FixEpoch& nEpoch) override { mShown = nEpoch; }
  void look(size_t nLogLines);
  void lookAtFix();
  void lookAtSky();
  void lookAtCounts();
  void lookAtLogs();
  void lookAtReplay();

  static constexpr size_t LOG_LINES = 200;
  static constexpr std::chrono::milliseconds QUIET{200};  // more than a sentence takes at 4800 baud
  const ViewParts mParts;
  const bool mIsLive;
  const Playback mPlayback;
  LogPane mLog;
  FixEpoch mShown;
  LiveState mPicture;
  Clock::time_point mLastSentence = Clock::now();
  bool mIsUnderWay = false;  // sentences have come since an epoch was shown
};

}  // namespace drive
