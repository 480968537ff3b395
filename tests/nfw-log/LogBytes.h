// Records of both kinds of recording, built by hand.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

namespace logtest {

inline std::string littleEndian(uint32_t nValue, int nBytes) {
  std::string lBytes;
  for (int i = 0; i < nBytes; ++i) lBytes += static_cast<char>(nValue >> (8 * i) & 0xFF);
  return lBytes;
}

inline std::string logRecord(int nId, uint32_t nTick, const std::string& nData,
                             const std::string& nStamp = "2024/05/06 07:08:09.010") {
  char lId[16];
  snprintf(lId, sizeof(lId), " ID%08X: ", static_cast<unsigned int>(nId));
  return nStamp + lId + littleEndian(static_cast<uint32_t>(nId), 4) + littleEndian(nTick, 4) +
         littleEndian(static_cast<uint32_t>(nData.size()), 4) + nData + "\n";
}

inline std::string sensorRecord(int nId, int nVersion, uint32_t nTick, const std::string& nData) {
  return static_cast<char>(nId | nVersion << 4) + littleEndian(nTick, 4) +
         littleEndian(static_cast<uint32_t>(nData.size()), 2) + nData;
}

/// Of a sensor log: a position at a time, as hhmmss in thousandths, of a date of three bytes.
inline std::string binaryRmc(uint32_t nTime, const std::string& nDate) {
  return "\x05GP\x11" + littleEndian(nTime, 4) + littleEndian(480703800, 4) + littleEndian(113100000, 4) +
         std::string(8, '\0') + nDate + std::string(4, '\0');
}
/// The same without a date, and with an altitude of 0.
inline std::string binaryGga(uint32_t nTime) {
  return "\x01GP\x18" + littleEndian(nTime, 4) + littleEndian(480703800, 4) + littleEndian(113100000, 4) +
         std::string(16, '\0');
}

}  // namespace logtest
