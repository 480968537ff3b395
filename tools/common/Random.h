#pragma once

#include <cstdint>

namespace tool {

/// Numbers that are the same for the same seed on every system (the standard distributions are not).
class Random {
 public:
  explicit Random(uint64_t nSeed) : mState(nSeed) {}

  uint64_t next() {
    mState += 0x9E3779B97F4A7C15u;
    uint64_t lValue = mState;
    lValue = (lValue ^ (lValue >> 30)) * 0xBF58476D1CE4E5B9u;
    lValue = (lValue ^ (lValue >> 27)) * 0x94D049BB133111EBu;
    return lValue ^ (lValue >> 31);
  }
  double between(double nLow, double nHigh) {
    return nLow + (nHigh - nLow) * (static_cast<double>(next() >> 11) * 0x1.0p-53);
  }

 private:
  uint64_t mState;
};

}  // namespace tool
