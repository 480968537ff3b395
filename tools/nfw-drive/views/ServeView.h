#pragma once

#include "Roads.h"
#include "View.h"

namespace drive {

/// Hands the sentences to other programs: those of the receiver, or those of dead reckoning in their place.
class ServeView : public View {
 public:
  ServeView(bool nShowsDeadReckoning, Roads& nRoads) : mShowsDeadReckoning(nShowsDeadReckoning), mRoads(nRoads) {}

  void showRaw(std::string_view nSentence) override {
    if (!mShowsDeadReckoning) mRoads.send(nSentence);
  }
  void showDeadReckoning(std::string_view nSentence) override {
    if (mShowsDeadReckoning) mRoads.send(nSentence);
  }

 private:
  const bool mShowsDeadReckoning;
  Roads& mRoads;
};

}  // namespace drive
