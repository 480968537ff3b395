/// @file
/// What the host application decides about the stand-in of the threads. The unit's own library has no such header: the
/// framework never includes it.
#pragma once

namespace threadhost {

/// Threads started from here on get their stored priority as a SCHED_FIFO priority. Off by default. Where it is not
/// permitted they stay ordinary threads, which is said once on standard error. What is no thread of this layer stays
/// ordinary too, the SDKs' threads for one, whoever starts it: a listener's thread goes before the callback that
/// woke it.
void setRealTimePriorities(bool nEnabled);

}  // namespace threadhost
