// Records and sentences in tests of the binary log. Every buffer has exactly its size, so that the sanitizer sees the
// first byte beyond.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "NfwNmeaBinaryLogDataVersion0.h"

namespace binarylog {

using Bytes = std::vector<unsigned char>;
using Converter = nfw::NmeaBinaryLogDataVersion0;  // and what derives from it
using Operation = int (Converter::*)(const unsigned char*, unsigned int, unsigned char*, unsigned int);

inline Bytes bytesOf(const std::string& nText) { return {nText.begin(), nText.end()}; }
inline std::string textOf(const Bytes& nBytes) { return {nBytes.begin(), nBytes.end()}; }

/// "01 47": blanks are for the reader.
inline Bytes fromHex(const std::string& nHex) {
  std::string lDigits;
  for (const char lChar : nHex) {
    if (lChar != ' ') lDigits += lChar;
  }
  Bytes lBytes;
  for (size_t i = 0; i + 1 < lDigits.size(); i += 2) {
    lBytes.push_back(static_cast<unsigned char>(std::stoul(lDigits.substr(i, 2), nullptr, 16)));
  }
  return lBytes;
}

/// What the operation writes to a zeroed buffer of the given size; empty when it fails or there is nothing to write.
inline Bytes run(Converter& nConverter, Operation nOperation, const Bytes& nInput, unsigned int nRoom) {
  const std::unique_ptr<unsigned char[]> lpOutput(new unsigned char[nRoom]());
  const int lSize =
      (nConverter.*nOperation)(nInput.data(), static_cast<unsigned int>(nInput.size()), lpOutput.get(), nRoom);
  return {lpOutput.get(), lpOutput.get() + (lSize > 0 ? lSize : 0)};
}

inline Bytes encode(Converter& nConverter, const std::string& nSentence) {
  return run(nConverter, &Converter::convertFromNmeaSentence, bytesOf(nSentence), Converter::MIN_RECORD_BUFFER);
}

inline Bytes encode(Converter& nConverter, const ZTSDeadReckoningDef::DRG_LOCATION_INFO& nReport,
                    unsigned int nRoom = 1356) {
  const std::unique_ptr<unsigned char[]> lpRecord(new unsigned char[nRoom]());
  const int lSize = nConverter.convertFromDeadReckoningData(nReport, lpRecord.get(), nRoom);
  return {lpRecord.get(), lpRecord.get() + (lSize > 0 ? lSize : 0)};
}

inline std::string decode(Converter& nConverter, const Bytes& nRecord) {
  return textOf(run(nConverter, &Converter::convertToNmeaSentence, nRecord, 256));
}

/// FNV-1a, continued from a value before.
inline unsigned long long digest(const Bytes& nBytes, unsigned long long nBefore = 0xCBF29CE484222325ULL) {
  for (const unsigned char lByte : nBytes) nBefore = (nBefore ^ lByte) * 0x100000001B3ULL;
  return nBefore;
}

}  // namespace binarylog
