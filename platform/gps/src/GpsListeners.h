// What the receiver wants to know of the registrations.
#pragma once

#include "GpsDef.h"

namespace gpshost {

/// Does anybody listen to sentences or records of this system?
bool hasListeners(GeodeticSystem nSystem);

}  // namespace gpshost
