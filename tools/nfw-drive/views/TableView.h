#pragma once

#include <vector>

#include "FixView.h"
#include "LogPane.h"
#include "Playback.h"

namespace drive {

/// A live view of the fix and of where a replay stands, redrawn in place on a terminal. It leaves the terminal's
/// settings alone and only hides the cursor while it runs; the last picture stays.
class TableView : public FixView {
 public:
  static constexpr const char* SHOW_CURSOR = "\x1b[?25h";

  TableView(const Options& nOptions, const Progress& nProgress, LogKinds& nKinds, OutputQueue& nOutput)
      : mSource(nOptions.getName()),
        mIsReplay(nOptions.mReplay.isWanted()),
        mPlayback(nOptions.mReplay),
        mShowsDeadReckoning(nOptions.mShowsDeadReckoning),
        mProgress(nProgress),
        mOutput(nOutput),
        mLog(LOG_LINES, nKinds) {}

  void begin() override;
  void tick() override;
  void showDeadReckoning(std::string_view nSentence) override;
  void end() override;

 private:
  void draw(const char* npEnd);  ///< the picture, and what follows it
  std::vector<std::string> picture() const;
  void lookAtReplay();
  std::string kinds() const;
  std::string rejects() const;

  static constexpr size_t LOG_LINES = 5;
  const std::string mSource;
  const bool mIsReplay;
  const Playback mPlayback;
  std::string mReplayText;  // where it stands, or has stood at its end
  const bool mShowsDeadReckoning;
  std::string mReckoned[2];  // the last RMC and GGA of dead reckoning
  const Progress& mProgress;
  OutputQueue& mOutput;
  LogPane mLog;
  size_t mDrawn = 0;  // lines on the terminal
};

}  // namespace drive
