/// @file
/// From the text of a sentence to its binary record.
#pragma once

#include "BinaryRecordFormat.h"
#include "FieldScanner.h"

namespace nfw {

/// Checks the arguments, then encodes.
/// @return the size of the record, -1 on failure
int encodeSentence(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                   const unsigned char* npSentence, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize);

/// One walk over the fields of a sentence, which writes each to its place in the record.
///
/// A field is taken by its short road. Whatever that turns down is taken with care, and only then may there be
/// something to log: before the first line the status field is looked up, because a sentence without it fails before
/// all else, and because it decides what is logged of numbers that do not convert.
class SentenceEncoder {
 public:
  /// @param nOutSize at least the record's size
  SentenceEncoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                  const unsigned char* npSentence, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize);

  int encode();

 private:
  using Text = FieldScanner::Text;

  bool encodeField(const BinaryField& nField);
  bool encodeReal(const BinaryField& nField);
  bool encodeRealWithCare(const BinaryField& nField);
  bool encodeCode(const BinaryField& nField);
  bool encodeCodeWithCare(const BinaryField& nField);
  bool takeCode(const BinaryField& nField, int nCode);
  bool refuseCode(const BinaryField& nField, const char* npText);
  bool encodeDate(const BinaryField& nField);
  bool encodeDateWithCare(const BinaryField& nField);
  bool encodeSatellites(const BinaryField& nField);
  bool encodeBlocks();
  bool encodeBlock(unsigned char* npBlock);
  bool encodeNumber(const BinaryField& nField);
  bool encodeNumberWithCare(const BinaryField& nField);
  bool takeText(const BinaryField& nField, Text& nText, unsigned int* npLength);
  bool extract(const char* npMissing, Text& nText);
  bool knowStatus();
  bool fail(const char* npWords) const;

  const BinaryRecordFormat& mFormat;
  NmeaBinaryLogDataVersion0& mVersion;
  FieldScanner mFields;
  unsigned char* const mpRecord;
  unsigned char* const mpRecordEnd;
  unsigned char* mpBase;  // where offsets count from: moves on behind satellite numbers
  bool mIsStatusKnown = false;
  bool mIsValid = false;      // the sentence reports a valid fix
  bool mIsBlockWhole = true;  // no field of the block was empty
};

}  // namespace nfw
