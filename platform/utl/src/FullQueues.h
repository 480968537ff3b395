// What the stand-ins of the SDKs ask about the queues behind their listeners.
#pragma once

namespace utl {

/// Messages of the calling thread that found a queue full so far. A callback of an SDK cannot answer that it lost what
/// it was told: whoever calls it compares before and after.
class FullQueues {
 public:
  static unsigned int met();
  static void note();
};

}  // namespace utl
