// Records of both kinds of recording, built by hand.
#pragma once

#include "LogRecords.h"

namespace logtest {

using nfwtest::le32;
using nfwtest::sensorRecord;

inline std::string logRecord(int nId, uint32_t nTick, const std::string& nData,
                             const std::string& nStamp = "2024/05/06 07:08:09.010") {
  char lId[16];
  snprintf(lId, sizeof(lId), " ID%08X: ", static_cast<unsigned int>(nId));
  return nStamp + lId + le32(static_cast<uint32_t>(nId)) + le32(nTick) + le32(static_cast<uint32_t>(nData.size())) +
         nData + "\n";
}

/// Of a sensor log: a position at a time, as hhmmss in thousandths, of a date of three bytes.
inline std::string binaryRmc(uint32_t nTime, const std::string& nDate) {
  return "\x05GP\x11" + le32(nTime) + le32(480703800) + le32(113100000) + std::string(8, '\0') + nDate +
         std::string(4, '\0');
}
/// The same without a date, and with an altitude of 0.
inline std::string binaryGga(uint32_t nTime) {
  return "\x01GP\x18" + le32(nTime) + le32(480703800) + le32(113100000) + std::string(16, '\0');
}

}  // namespace logtest
