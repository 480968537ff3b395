#pragma once

#include "LiveLayout.h"
#include "LogPane.h"
#include "PageSwitch.h"
#include "Playback.h"
#include "Recorder.h"
#include "Screen.h"
#include "ShownEpoch.h"

namespace drive {

/// The live view: the last epoch, and what a run has counted, on the whole of a terminal. In the end the last fix and
/// what the log has complained of stay there.
class LiveView : public ShownEpoch {
 public:
  /// @param nOthers the epochs of further sources; not owned, outlive it
  LiveView(const Options& nOptions, const ViewParts& nParts, const std::vector<const ShownEpoch*>& nOthers);

  void begin() override;
  void tick() override;
  void end() override;

 private:
  void look(size_t nLogLines);
  void lookAtFix();
  void lookAtSky();
  void lookAtCounts();
  void lookAtLogs();
  void lookAtReplay();
  void lookAtSources();

  static constexpr size_t LOG_LINES = 200;
  const ViewParts mParts;
  const bool mIsLive;
  const Playback mPlayback;
  std::vector<const ShownEpoch*> mEpochs;  // of each source, the first its own
  LogPane mLog;
  LiveState mPicture;
};

}  // namespace drive
