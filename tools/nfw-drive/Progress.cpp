#include "Progress.h"

namespace drive {

bool Progress::isAllDelivered() const {
  for (int i = nfw::NMEA_GGA; i < tool::KIND_NUM; ++i) {
    if (mDelivered.get(i) != mAccepted.get(i)) return false;
  }
  return mDelivered.get(nfw::NMEA_UNKNOWN) == mLines.accepted() && mDeliveredEpochs == mEpochs;
}

}  // namespace drive
