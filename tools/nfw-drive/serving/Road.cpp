#include "Road.h"

#include "Format.h"

namespace drive {

std::string RoadCounts::getLoss() const {
  std::string lText;
  if (mDropped > 0) lText = fmt::format("{} of {} clients did not read", mDropped, mClients.load());
  if (mLost > 0) lText += fmt::format("{}{} sentences were not taken", lText.empty() ? "" : ", ", mLost);
  return lText;
}

}  // namespace drive
