/// @file
/// From a binary record to the text of its sentence.
#pragma once

#include "BinaryRecordFormat.h"

namespace nfw {

/// Checks the arguments, then decodes.
/// @return the length of the text, -1 on failure
int decodeSentence(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                   const unsigned char* npRecord, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize);

/// One walk over the fields of a record, which appends each to the text.
class SentenceDecoder {
 public:
  /// The record is whole.
  SentenceDecoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord,
                  unsigned int nLength, unsigned char* npOut, unsigned int nOutSize);

  int decode();

 private:
  bool appendAddress();
  bool appendField(const BinaryField& nField);
  bool appendReal(const BinaryField& nField);
  bool appendNumber(const BinaryField& nField, uint32_t nValue);
  bool appendCode(const BinaryField& nField);
  bool appendDate(const BinaryField& nField);
  bool appendSatellites(const BinaryField& nField);
  bool appendBlocks();
  bool appendBlock(const unsigned char* npBlock);
  bool appendCheckSum();

  bool appendRealNearEnd(const BinaryField& nField, int64_t nValue);
  bool appendNumberNearEnd(const BinaryField& nField, uint32_t nValue);
  bool hasRoom() const;
  bool leavesEmpty(const BinaryField& nField, bool nIsZero);
  bool append(const char* npText, unsigned int nLength);
  bool append(char nChar);
  bool fail(const char* npWords) const;

  const BinaryRecordFormat& mFormat;
  NmeaBinaryLogDataVersion0& mVersion;
  const unsigned char* const mpRecord;
  const unsigned char* const mpRecordEnd;
  const unsigned char* mpBase;  // where offsets count from: moves on behind satellite numbers
  unsigned char* const mpText;
  unsigned char* mpNext;
  unsigned char* const mpTextEnd;
  bool mIsBlockWhole = true;  // the block was encoded from fields of which none was empty
  bool mHasEmpty = false;     // an empty field of the block has been written
};

}  // namespace nfw
