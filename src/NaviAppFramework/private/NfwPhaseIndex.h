// The lifecycle phases, in their order.
#pragma once

namespace nfw {

enum PhaseIndex { PRE_QUICK_BOOT, INITIALIZE, START, STOP, SHUTDOWN, FINALIZE };

}  // namespace nfw
