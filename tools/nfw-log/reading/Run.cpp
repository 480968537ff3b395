#include "Run.h"

#include "Messages.h"

namespace logtool {

void Run::note(const Selector& nSelector) {
  const std::vector<std::string>& lTypes = mOptions.mSelection.mTypes;
  for (size_t i = 0; i < lTypes.size(); ++i) {
    if (nSelector.hasSeen(i)) mSeenTypes.insert(lTypes[i]);
  }
  mIsTurnedRound = mIsTurnedRound || nSelector.isTurnedRound();
}

bool Run::wasSelectable() const {
  for (const std::string& lType : mOptions.mSelection.mTypes) {
    if (mSeenTypes.count(lType) == 0) tell("--type: no record is of the type {}; info tells the types", lType);
  }
  if (mIsTurnedRound) say("--from: the end is before the begin");
  return !mIsTurnedRound && (mOptions.mSelection.mTypes.empty() || !mSeenTypes.empty());
}

}  // namespace logtool
