#include "GsvGroup.h"

#include <algorithm>
#include <iterator>

namespace gpshost {

bool GsvGroup::add(const GPGSV& nMessage) {
  if (nMessage.messageNumber <= 1) clear();
  mGroup.satelliteType = nMessage.satelliteType;
  mGroup.messageCount = nMessage.messageCount;
  mGroup.messageNumber = nMessage.messageNumber;
  mGroup.satelliteView = nMessage.satelliteView;
  const auto lRoom = static_cast<unsigned int>(std::size(mGroup.satellite)) - mGroup.satelliteCount;
  const unsigned int lCount = std::min(nMessage.satelliteCount, lRoom);
  std::copy_n(nMessage.satellite, lCount, mGroup.satellite + mGroup.satelliteCount);
  mGroup.satelliteCount += lCount;
  return nMessage.messageNumber >= nMessage.messageCount;
}

}  // namespace gpshost
