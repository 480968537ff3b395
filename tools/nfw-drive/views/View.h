#pragma once

#include <memory>
#include <string_view>

#include "LogKinds.h"
#include "NfwNmeaSentence.h"
#include "Options.h"
#include "OutputQueue.h"
#include "Progress.h"
#include "Roads.h"

namespace drive {

class PageSwitch;
class Recorder;
class Screen;

/// How data is shown. One thread at a time.
class View {
 public:
  virtual ~View() = default;

  virtual void begin() {}
  /// Of which source the sentences that follow are.
  virtual void from(size_t) {}
  virtual void showRaw(std::string_view) {}
  virtual void showGga(const nfw::GgaSentence&) {}
  virtual void showGll(const nfw::GllSentence&) {}
  virtual void showGsa(const nfw::GsaSentence&) {}
  virtual void showGsv(const nfw::GsvSentence&) {}
  virtual void showRmc(const nfw::RmcSentence&) {}
  virtual void showVtg(const nfw::VtgSentence&) {}
  virtual void showZda(const nfw::ZdaSentence&) {}
  virtual void showPubx(const nfw::PubxSentence&) {}
  virtual void showDeadReckoning(std::string_view) {}
  /// Ten times a second.
  virtual void tick() {}
  virtual void end() {}
};

/// What views look at and write to; everything outlives them.
struct ViewParts {
  const Progress& mProgress;
  const Recorder& mRecorder;
  const PageSwitch& mPages;
  LogKinds& mKinds;
  Screen& mScreen;
  OutputQueue& mOutput;
  Roads& mRoads;
};

/// The view for the format, the live one when the output is a terminal that can show it, else plain lines; and the one
/// for other programs.
std::vector<std::unique_ptr<View>> createViews(const Options& nOptions, const ViewParts& nParts);

}  // namespace drive
