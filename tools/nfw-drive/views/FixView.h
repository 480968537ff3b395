#pragma once

#include "FixState.h"
#include "View.h"

namespace drive {

/// What the views of the fix share: they gather it.
class FixView : public View {
 public:
  void showRaw(std::string_view nSentence) override { mFix.takeText(nSentence); }
  void showDeadReckoning(std::string_view nSentence) override { mFix.takeReckoned(nSentence); }
  void showGga(const nfw::GgaSentence& nRecord) override { mFix.take(nRecord); }
  void showGsa(const nfw::GsaSentence& nRecord) override { mFix.take(nRecord); }
  void showGsv(const nfw::GsvSentence& nRecord) override { mFix.take(nRecord); }
  void showRmc(const nfw::RmcSentence& nRecord) override { mFix.take(nRecord); }
  void showVtg(const nfw::VtgSentence& nRecord) override { mFix.take(nRecord); }
  void showZda(const nfw::ZdaSentence& nRecord) override { mFix.take(nRecord); }

 protected:
  FixState mFix;
};

}  // namespace drive
