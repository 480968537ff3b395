// Numbers from a seed: the same on every machine.
#pragma once

#include <cstdint>

namespace schedule {

class Random {
 public:
  explicit Random(uint64_t nSeed) : mState(nSeed * 0x9E3779B97F4A7C15u + 0x1234567u) {}

  uint64_t next() {
    mState += 0x9E3779B97F4A7C15u;
    uint64_t lMixed = mState;
    lMixed = (lMixed ^ (lMixed >> 30)) * 0xBF58476D1CE4E5B9u;
    lMixed = (lMixed ^ (lMixed >> 27)) * 0x94D049BB133111EBu;
    return lMixed ^ (lMixed >> 31);
  }
  unsigned int below(uint64_t nNum) { return static_cast<unsigned int>((next() >> 32) * nNum >> 32); }

 private:
  uint64_t mState;
};

}  // namespace schedule
