/// @file
/// How the host application feeds the stand-in of the dead-reckoning SDK. The unit's own SDK has no such header: the
/// framework never includes it.
#pragma once

#include "ZTSDeadReckoningDef.h"

namespace deadreckoninghost {

/// Hands a report to the listeners, one after the other on the calling thread, without a lock held. Any thread may
/// call.
void feed(ZTSDeadReckoningDef::DRG_LOCATION_INFO const& nInfo);

}  // namespace deadreckoninghost
