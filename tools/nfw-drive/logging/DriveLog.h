#pragma once

#include "NfwAppLog.h"

namespace drive {

const int LOG_TYPE_DRIVE = 100;  ///< the log type of this tool

}  // namespace drive
