#pragma once

#include <vector>

#include "View.h"

namespace drive {

/// Of several sources each has a view of its own, so that the epoch of one is not mixed with another's. Dead reckoning
/// is of the first.
class SourceViews : public View {
 public:
  explicit SourceViews(std::vector<std::unique_ptr<View>> nViews)
      : mViews(std::move(nViews)), mpCurrent(mViews.front().get()) {}

  void begin() override { each(&View::begin); }
  void from(size_t nSource) override { mpCurrent = mViews[nSource].get(); }
  void showRaw(std::string_view nSentence) override { mpCurrent->showRaw(nSentence); }
  void showGga(const nfw::GgaSentence& nRecord) override { mpCurrent->showGga(nRecord); }
  void showGll(const nfw::GllSentence& nRecord) override { mpCurrent->showGll(nRecord); }
  void showGsa(const nfw::GsaSentence& nRecord) override { mpCurrent->showGsa(nRecord); }
  void showGsv(const nfw::GsvSentence& nRecord) override { mpCurrent->showGsv(nRecord); }
  void showRmc(const nfw::RmcSentence& nRecord) override { mpCurrent->showRmc(nRecord); }
  void showVtg(const nfw::VtgSentence& nRecord) override { mpCurrent->showVtg(nRecord); }
  void showZda(const nfw::ZdaSentence& nRecord) override { mpCurrent->showZda(nRecord); }
  void showPubx(const nfw::PubxSentence& nRecord) override { mpCurrent->showPubx(nRecord); }
  void showDeadReckoning(std::string_view nSentence) override { mViews.front()->showDeadReckoning(nSentence); }
  void tick() override { each(&View::tick); }
  void end() override { each(&View::end); }

 private:
  // The first comes last: it shows what the others have gathered.
  void each(void (View::*npDo)()) {
    for (auto i = mViews.rbegin(); i != mViews.rend(); ++i) ((**i).*npDo)();
  }

  const std::vector<std::unique_ptr<View>> mViews;
  View* mpCurrent;
};

}  // namespace drive
