#include "Clock.h"
#include "PlatformSeams.h"

namespace seams {

ManualClock::ManualClock(unsigned int nTickMs) { utl::Clock::setManual(nTickMs); }

ManualClock::~ManualClock() { utl::Clock::setManual(-1); }

void ManualClock::advance(unsigned int nMs) { utl::Clock::setManual(utl::Clock::manualMs() + nMs); }

unsigned int ManualClock::tick() const { return static_cast<unsigned int>(utl::Clock::manualMs()); }

}  // namespace seams
