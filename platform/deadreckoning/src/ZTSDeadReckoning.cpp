#include "ZTSDeadReckoning.h"

#include "SdkListeners.h"
#include "ZTSDeadReckoningHost.h"

namespace {

// Never destroyed: a sensor's thread may feed while the process ends.
SdkListeners<ZTSDeadReckoningListener>& listeners() {
  static SdkListeners<ZTSDeadReckoningListener>& lListeners = *new SdkListeners<ZTSDeadReckoningListener>;
  return lListeners;
}

}  // namespace

ZTSDeadReckoning* ZTSDeadReckoning::GetInstance() {
  static ZTSDeadReckoning* const lpDeadReckoning = new ZTSDeadReckoning;
  return lpDeadReckoning;
}

bool ZTSDeadReckoning::addListener(ZTSDeadReckoningListener* npListener) { return listeners().add(npListener); }
bool ZTSDeadReckoning::removeListener(ZTSDeadReckoningListener* npListener) { return listeners().remove(npListener); }

void deadreckoninghost::feed(ZTSDeadReckoningDef::DRG_LOCATION_INFO const& nInfo) {
  listeners().each(0, [&](ZTSDeadReckoningListener& nListener) { nListener.onNotifyLocationInfoForTervin(&nInfo); });
}
