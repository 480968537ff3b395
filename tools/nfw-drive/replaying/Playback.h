#pragma once

#include "NfwLogPlayPosition.h"
#include "Options.h"

namespace drive {

/// The replay under way, in the hands of who uses the tool. Of two at once both follow, and the data log's tells where
/// it stands. Any thread, while the services run.
class Playback {
 public:
  explicit Playback(const ReplayOptions& nReplay) : mReplay(nReplay) {}

  nfw::LogPlayPosition position() const;
  bool hasCome(uint32_t nOffsetMs) const;  ///< what lies before is due

  void pause() const;
  void resume() const;
  void step() const;
  void setRate(unsigned int nPermille) const;
  bool seek(uint32_t nOffsetMs) const;

 private:
  template <class Do>
  bool each(Do nDo) const;

  const ReplayOptions& mReplay;
};

}  // namespace drive
