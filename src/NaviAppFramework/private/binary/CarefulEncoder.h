/// @file
/// Fields of a sentence out of the ordinary, and all that is said about them.
#pragma once

#include "BinaryRecordFormat.h"
#include "FieldScanner.h"

namespace nfw {

/// Stores fields that the short road of SentenceEncoder turns down. Only here may there be something to log: before the
/// first line the status field is looked up, because a sentence without it fails before all else, and because it
/// decides what is logged of numbers that do not convert.
///
/// Each operation takes a field where the walk stands, stores it, and gives the start of the next field; or writes the
/// lines of what is wrong with the record and gives null. Offsets count from npBase.
class CarefulEncoder {
 public:
  /// @param npRecordEnd behind the room for the record
  CarefulEncoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const FieldScanner& nFields,
                 const unsigned char* npRecordEnd)
      : mFormat(nFormat), mVersion(nVersion), mFields(nFields), mpRecordEnd(npRecordEnd) {}

  /// A number that does not convert is stored as 0, and the record goes on.
  const char* real(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase);
  const char* code(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase);
  /// Three pairs of characters, of which the last may be cut short; what follows is of no account.
  const char* date(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase);
  const char* number(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase, bool* npIsEmpty);
  /// @param nppBase moves on by the number's size
  const char* satellite(FieldPlace nPlace, const BinaryField& nField, unsigned char** nppBase, bool* npIsEmpty);

  /// Writes a line of a sentence; null.
  static const char* fail(const BinaryRecordFormat& nFormat, const char* npWords);
  const char* fail(const char* npWords) const { return fail(mFormat, npWords); }

 private:
  using Text = FieldScanner::Text;

  const char* extract(FieldPlace nPlace, const BinaryField& nField, Text& nText);
  bool knowStatus();

  const BinaryRecordFormat& mFormat;
  NmeaBinaryLogDataVersion0& mVersion;
  const FieldScanner& mFields;
  const unsigned char* const mpRecordEnd;
  bool mIsStatusKnown = false;
  bool mIsValid = false;  // the sentence reports a valid fix
};

}  // namespace nfw
