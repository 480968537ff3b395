#pragma once

#include <atomic>

#include "Keys.h"
#include "LiveState.h"

namespace drive {

/// Which page of the live view is wanted. Keys come on the main thread, the view asks on its own.
class PageSwitch {
 public:
  /// The key of a page shows it, and the overview again.
  void on(Keys::Key nKey) {
    if (nKey == Keys::SATELLITES) toggle(Page::SATELLITES);
    if (nKey == Keys::LOG) toggle(Page::LOG);
  }
  void setHasKeys() { mHasKeys = true; }

  Page get() const { return mPage; }
  bool hasKeys() const { return mHasKeys; }

 private:
  void toggle(Page nPage) { mPage = mPage == nPage ? Page::OVERVIEW : nPage; }

  std::atomic<Page> mPage{Page::OVERVIEW};
  std::atomic<bool> mHasKeys{false};
};

}  // namespace drive
