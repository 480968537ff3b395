#include "ManualTime.h"
#include "PlatformSeams.h"

namespace seams {

ManualClock::ManualClock(unsigned int nTickMs) { setManualMs(nTickMs); }

ManualClock::~ManualClock() { setManualMs(-1); }

void ManualClock::advance(unsigned int nMs) { setManualMs(manualMs() + nMs); }

unsigned int ManualClock::tick() const { return static_cast<unsigned int>(manualMs()); }

}  // namespace seams
