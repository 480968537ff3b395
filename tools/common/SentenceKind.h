#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "NfwNmeaSentence.h"

namespace tool {

const int KIND_NUM = nfw::NMEA_PUBX + 1;  ///< with NMEA_UNKNOWN for the kinds that are not parsed

/// "GGA" ... "PUBX", "other".
inline const char* kindName(int nKind) {
  static const char* const NAMES[KIND_NUM] = {"other", "GGA", "GLL", "GSA", "GSV", "RMC", "VTG", "ZDA", "PUBX"};
  return NAMES[nKind];
}

/// A count for each kind: one thread adds, any thread looks.
class KindCounts {
 public:
  void add(int nKind) { mCounts[static_cast<size_t>(nKind)].fetch_add(1, std::memory_order_relaxed); }
  uint64_t get(int nKind) const { return mCounts[static_cast<size_t>(nKind)].load(std::memory_order_relaxed); }
  uint64_t total() const {
    uint64_t lTotal = 0;
    for (const auto& lCount : mCounts) lTotal += lCount.load(std::memory_order_relaxed);
    return lTotal;
  }

 private:
  std::array<std::atomic<uint64_t>, KIND_NUM> mCounts{};
};

}  // namespace tool
