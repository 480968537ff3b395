#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace drive {

/// Of which source the sentences under way are, in their order. Who hands one over adds it, who hears it takes it: the
/// window that bounds them lies between both.
class Origins {
 public:
  static constexpr unsigned int PLACES = 64;

  void add(size_t nSource) { mSources[mIn++ % PLACES] = static_cast<uint8_t>(nSource); }
  size_t take() { return mSources[mOut++ % PLACES]; }

 private:
  std::array<uint8_t, PLACES> mSources{};
  unsigned int mIn = 0, mOut = 0;
};

}  // namespace drive
