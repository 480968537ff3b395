/// @file
/// How the binary record of a kind of sentence is described: once, as a list of fields that encoders and decoders walk.
///
/// The lists are in BinaryRecordLists.h, the fields in the order of the sentence. docs/formats/binary-nmea.md shows the
/// same as bytes.
#pragma once

#include <cstring>

#include "LittleEndian.h"
#include "NfwNmeaBinaryLogDataVersion0.h"

namespace nfw {

/// Texts that stand for small numbers.
struct BinaryCode {
  const char* mpTexts;    ///< of all codes from 0 on, one behind the other; a blank is the empty field
  unsigned char mLength;  ///< characters of each text
  unsigned char mShift;   ///< 4: in the high nibble of its byte
  unsigned char mMost;    ///< the greatest number that its place can hold: of a nibble, or of a byte of its own
  /// Logs why a text has no code, which fails the record. Null: such a text is stored as 0.
  void (*mpRefuse)(const char* npText);
  /// What a number without a text is called in the log. Null: it is written as the text of 0.
  const char* mpUnknown;

  /// Reads no further than the text agrees with one of a code.
  /// @return the code of a text, -1 when it has none
  int find(const char* npText, unsigned int nLength) const {
    if (nLength == 0) return mpTexts[0] == ' ' ? 0 : -1;
    if (nLength != mLength) return -1;
    int lCode = 0;
    for (const char* lpText = mpTexts; *lpText != '\0'; lpText += mLength, ++lCode) {
      if (lpText[0] == npText[0] && (mLength == 1 || lpText[1] == npText[1])) return lCode;
    }
    return -1;
  }
  /// @return the text of a code, null when it has none
  const char* text(unsigned int nCode) const {
    return nCode < strlen(mpTexts) / mLength ? mpTexts + nCode * mLength : nullptr;
  }
  unsigned int numberIn(unsigned char nByte) const { return (nByte >> mShift) & mMost; }
};

/// One field. Offsets behind satellite numbers count as if these had no width: the walk adds it.
struct BinaryField {
  enum Kind : unsigned char {
    REAL,         ///< signed, 4 bytes, times 10^mScale; with mpTexts ("NS") its sign is a field of its own
    UNIT,         ///< mpTexts as it stands, not stored
    NUMBER,       ///< unsigned, mWidth bytes
    YEAR,         ///< four digits, of which the last two are stored
    HIGH_NIBBLE,  ///< the low four bits of a number
    LOW_NIBBLE,   ///< a number, or-ed in whole: one above 15 spills into the high nibble, kept for compatibility
    CODE,
    DATE,        ///< ddmmyy, one byte each
    SATELLITES,  ///< mCount satellite numbers in the width of the version
    BLOCKS,      ///< the satellites of a GSV, as many as its message counts tell
  };

  Kind mKind;
  unsigned char mOffset;
  unsigned char mWidth;      ///< bytes of a NUMBER
  unsigned char mScale;      ///< decimals of a REAL
  unsigned char mDigits;     ///< least characters in the sentence, filled with "0" on the left
  bool mIsZeroEmpty;         ///< a 0 is an empty field in the sentence
  unsigned char mCount;      ///< of SATELLITES
  const char* mpTexts;       ///< of UNIT and the sign of REAL
  const BinaryCode* mpCode;  ///< of CODE
  const char* mpMissing;     ///< logged when the sentence has no such field
  const char* mpFailed;      ///< logged when its text does not convert; of a sign, when it is missing
  const char* mpName;        ///< of a REAL, in the lines of its conversion
};

/// One kind of sentence.
struct BinaryRecordFormat {
  const char* mpFromSentence;  ///< operations, as the log names them
  const char* mpToSentence;
  const char* mpFromData;
  const char* mpAddress;  ///< "GGA" behind a talker, or the whole address
  unsigned int mFixedSize;
  unsigned int (NmeaBinaryLogDataVersion0::*mpSize)();  ///< of a record whose size depends on the version
  const BinaryField* mpFields;
  unsigned int mFieldNum;
  unsigned int mStatusField;    ///< which field tells of a valid fix, counted from 1; 0: none
  const char* mpStatusMissing;  ///< logged when there is no such field
  bool (*mpIsValid)(const char* npStatus);

  unsigned int size(NmeaBinaryLogDataVersion0& nVersion) const {
    return mpSize != nullptr ? (nVersion.*mpSize)() : mFixedSize;
  }
  bool hasTalker() const { return mpAddress[0] != '$'; }
};

/// What stands outside the lists.
const unsigned int TALKER_SIZE = 2;
const unsigned int CODE_OFFSET = 2;       ///< the byte that nibbles and codes share
const unsigned int GSV_COUNT_OFFSET = 2;  ///< message count; behind it the message number and the satellites in view
const unsigned int GSV_HEADER_SIZE = 5;
const unsigned int GSV_MAX_VIEW = 128;

/// A block of a GSV: satellite number, then these five bytes.
const unsigned int GSV_BLOCK_REST = 5;
const unsigned int GSV_VALID_OFFSET = 0;

/// How many blocks follow the header of a GSV record.
inline unsigned int gsvBlockNum(const unsigned char* npRecord) {
  const unsigned int lCount = npRecord[GSV_COUNT_OFFSET];
  const unsigned int lNumber = npRecord[GSV_COUNT_OFFSET + 1];
  const unsigned int lView = npRecord[GSV_COUNT_OFFSET + 2];
  if (lView == 0 || lNumber > lCount) return 0;
  return lNumber < lCount || lView % 4 == 0 ? 4 : lView % 4;
}

/// Size of the GSV record that starts with this header.
inline unsigned int gsvRecordSize(const unsigned char* npRecord, NmeaBinaryLogDataVersion0& nVersion) {
  return GSV_HEADER_SIZE + gsvBlockNum(npRecord) * (nVersion.getSatelliteNumSize() + GSV_BLOCK_REST);
}

/// Calls with where each block of a GSV record begins, until a call returns false.
template <class Byte, class Use>
bool eachGsvBlock(Byte* npRecord, NmeaBinaryLogDataVersion0& nVersion, Use nUse) {
  const unsigned int lBlockNum = gsvBlockNum(npRecord);
  const unsigned int lSize = nVersion.getSatelliteNumSize() + GSV_BLOCK_REST;
  for (unsigned int i = 0; i < lBlockNum; ++i) {
    if (!nUse(npRecord + GSV_HEADER_SIZE + i * lSize)) return false;
  }
  return true;
}

/// The greatest number that a field may hold in the sentence.
inline uint32_t maxOf(const BinaryField& nField) {
  const unsigned int lWidth = nField.mKind == BinaryField::YEAR ? 2 : nField.mWidth;
  return 0xFFFFFFFFU >> (32 - 8 * lWidth);
}

/// Stores a number as its field says: in bytes of its own, in a nibble, or a year in one byte.
inline void putNumber(const BinaryField& nField, unsigned char* npBase, uint32_t nValue) {
  unsigned char* const lpPlace = npBase + nField.mOffset;
  switch (nField.mKind) {
    case BinaryField::YEAR:
      *lpPlace = static_cast<unsigned char>(nValue % 100);
      break;
    case BinaryField::HIGH_NIBBLE:
      *lpPlace = static_cast<unsigned char>(*lpPlace | nValue << 4);
      break;
    case BinaryField::LOW_NIBBLE:
      *lpPlace = static_cast<unsigned char>(*lpPlace | nValue);
      break;
    default:
      putUint(lpPlace, nField.mWidth, nValue);
  }
}

/// Stores a code beside what its byte holds already.
inline void putCode(const BinaryField& nField, unsigned char* npBase, int nCode) {
  unsigned char* const lpPlace = npBase + nField.mOffset;
  *lpPlace = static_cast<unsigned char>(*lpPlace | nCode << nField.mpCode->mShift);
}

}  // namespace nfw
