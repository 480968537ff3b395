#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace logtool {

/// The sum of zip and PNG (polynomial 0xEDB88320), taken piece by piece.
class Crc32 {
 public:
  void add(std::string_view nBytes) {
    for (const char lByte : nBytes) {
      mSum = TABLE[(mSum ^ static_cast<unsigned char>(lByte)) & 0xFF] ^ (mSum >> 8);
    }
  }
  uint32_t get() const { return ~mSum; }

 private:
  using Table = std::array<uint32_t, 256>;
  static constexpr Table make() {
    Table lTable{};
    for (uint32_t i = 0; i < 256; ++i) {
      uint32_t lSum = i;
      for (int lBit = 0; lBit < 8; ++lBit) lSum = (lSum & 1) != 0 ? 0xEDB88320u ^ (lSum >> 1) : lSum >> 1;
      lTable[i] = lSum;
    }
    return lTable;
  }
  static const Table TABLE;
  uint32_t mSum = ~0u;
};

inline constexpr Crc32::Table Crc32::TABLE = Crc32::make();

}  // namespace logtool
