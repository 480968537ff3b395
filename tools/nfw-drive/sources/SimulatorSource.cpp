#include "SimulatorSource.h"

#include <algorithm>

namespace drive {

int SimulatorSource::read(char* npBuffer, size_t nSize, std::string*) {
  if (mStopper.isRequested()) return STOPPED;
  if (mRead == mText.size()) {
    mSimulator.writeEpoch(&mText);
    mRead = 0;
  }
  const size_t lSize = mText.copy(npBuffer, nSize, mRead);
  mRead += lSize;
  return static_cast<int>(lSize);
}

}  // namespace drive
