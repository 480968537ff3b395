#pragma once

#include <mutex>
#include <vector>

#include "View.h"

namespace drive {

/// Views that several threads use: those of both positioning services, and the one that turns its clock.
class SharedView {
 public:
  explicit SharedView(std::vector<std::unique_ptr<View>> nViews) : mViews(std::move(nViews)) {}

  template <class Use>
  void use(const Use& nUse) {
    const std::lock_guard<std::mutex> lLock(mMutex);
    for (const auto& lpView : mViews) nUse(*lpView);
  }

 private:
  std::mutex mMutex;
  const std::vector<std::unique_ptr<View>> mViews;
};

}  // namespace drive
