// Records of both logs, built and taken apart by hand: the tests' own knowledge of the bytes.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace nfwtest {

inline std::string le32(uint32_t nValue) {
  std::string lBytes;
  for (int i = 0; i < 4; ++i) lBytes += static_cast<char>(nValue >> (8 * i) & 0xFF);
  return lBytes;
}

inline uint32_t le32At(const std::string& nBytes, size_t nAt) {
  uint32_t lValue = 0;
  for (size_t i = 0; i < 4; ++i)
    lValue |= static_cast<uint32_t>(static_cast<unsigned char>(nBytes[nAt + i])) << (8 * i);
  return lValue;
}

/// A record of a log record file; `nClaimed` is the size that it states.
inline std::string logRecord(int nId, uint32_t nTime, const std::string& nData, uint32_t nClaimed) {
  return "2024/05/06 07:08:09.010 ID00000014: " + le32(static_cast<uint32_t>(nId)) + le32(nTime) + le32(nClaimed) +
         nData + "\n";
}
inline std::string logRecord(int nId, uint32_t nTime, const std::string& nData) {
  return logRecord(nId, nTime, nData, static_cast<uint32_t>(nData.size()));
}

inline std::string sensorRecord(int nId, int nVersion, uint32_t nTime, const std::string& nData) {
  const size_t lSize = nData.size();
  return static_cast<char>(nId | nVersion << 4) + le32(nTime) + static_cast<char>(lSize & 0xFF) +
         static_cast<char>(lSize >> 8) + nData;
}

struct LogRecordParts {
  std::string mText;
  int mId;
  uint32_t mTime;
  std::string mData;
};

/// The whole records of a log record file; `npRest` gets the number of bytes behind the last one.
inline std::vector<LogRecordParts> parseLogRecords(const std::string& nBytes, size_t* npRest = nullptr) {
  std::vector<LogRecordParts> lRecords;
  size_t lAt = 0;
  while (nBytes.size() - lAt >= 49) {
    const size_t lSize = le32At(nBytes, lAt + 44);
    if (nBytes.size() - lAt < lSize + 49 || nBytes[lAt + 48 + lSize] != '\n') break;
    lRecords.push_back({nBytes.substr(lAt, 36), static_cast<int>(le32At(nBytes, lAt + 36)), le32At(nBytes, lAt + 40),
                        nBytes.substr(lAt + 48, lSize)});
    lAt += lSize + 49;
  }
  if (npRest != nullptr) *npRest = nBytes.size() - lAt;
  return lRecords;
}

}  // namespace nfwtest
