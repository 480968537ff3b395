/// @file
/// From the parts of a dead-reckoning report to the records of sentences.
#pragma once

#include <initializer_list>

#include "BinaryRecordFormat.h"

namespace nfw {

/// One value of a report: a real, a number or a letter.
struct ReportValue {
  enum Kind : unsigned char { REAL, NUMBER, LETTER };

  ReportValue() = default;
  ReportValue(double nReal) : mReal(nReal) {}                               // NOLINT(google-explicit-constructor)
  ReportValue(unsigned char nNumber) : mKind(NUMBER), mNumber(nNumber) {}   // NOLINT(google-explicit-constructor)
  ReportValue(unsigned short nNumber) : mKind(NUMBER), mNumber(nNumber) {}  // NOLINT(google-explicit-constructor)
  ReportValue(unsigned int nNumber) : mKind(NUMBER), mNumber(nNumber) {}    // NOLINT(google-explicit-constructor)
  ReportValue(char nLetter) : mKind(LETTER), mLetter(nLetter) {}            // NOLINT(google-explicit-constructor)

  Kind mKind = REAL;
  double mReal = 0.0;
  unsigned int mNumber = 0;
  char mLetter = '\0';  // 0: there is none
};

/// Writes the values of one part to a record.
class ReportEncoder {
 public:
  /// @param npValues in the order of the sentence's fields; a sign is part of its real, units are left out, a date is
  /// three values, and a GSV block ends with its valid flag
  ReportEncoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const ReportValue* npValues);

  /// @param npTalker two characters; null writes zeros
  /// @return the size of the record, -1 on failure
  int encode(const char* npTalker, unsigned char* npOut, unsigned int nOutSize);

 private:
  bool encodeField(const BinaryField& nField);
  void encodeReal(const BinaryField& nField);
  bool encodeCode(const BinaryField& nField);
  bool encodeSatellites(const BinaryField& nField);
  bool encodeBlocks();
  bool encodeBlock(unsigned char* npBlock);
  bool fail(const char* npWords) const;

  const BinaryRecordFormat& mFormat;
  NmeaBinaryLogDataVersion0& mVersion;
  const ReportValue* mpNext;
  unsigned char* mpRecord = nullptr;
  unsigned char* mpRecordEnd = nullptr;
  unsigned char* mpBase = nullptr;  // where offsets count from: moves on behind satellite numbers
};

}  // namespace nfw
