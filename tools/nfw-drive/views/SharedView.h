#pragma once

#include <mutex>

#include "View.h"

namespace drive {

/// A view that several threads use: those of both positioning services, and the one that turns its clock.
class SharedView {
 public:
  explicit SharedView(std::unique_ptr<View> npView) : mpView(std::move(npView)) {}

  template <class Use>
  void use(const Use& nUse) {
    const std::lock_guard<std::mutex> lLock(mMutex);
    nUse(*mpView);
  }

 private:
  std::mutex mMutex;
  const std::unique_ptr<View> mpView;
};

}  // namespace drive
