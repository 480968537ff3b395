#include "SentenceDecoder.h"

#include <cstddef>
#include <cstring>
#include <iterator>

#include "BinaryNumber.h"
#include "BinaryRecordLists.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "NfwNmeaCheckSumCalclator.h"

namespace nfw {
namespace {

const unsigned int NUMBER_SIZE = 16;  // no number is longer

bool fail(const BinaryRecordFormat& nFormat, const char* npWords) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s", nFormat.mpToSentence, npWords);
  return false;
}

bool isWhole(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord,
             unsigned int nLength) {
  if (&nFormat != &GSV_FORMAT) return nLength >= nFormat.size(nVersion);
  return nLength >= GSV_HEADER_SIZE && nLength >= gsvRecordSize(npRecord, nVersion);
}

}  // namespace

int decodeSentence(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                   const unsigned char* npRecord, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize) {
  if (npRecord == nullptr || nLength == 0 || npOut == nullptr) {
    fail(nFormat, "Argument Error");
    return -1;
  }
  if (!isWhole(nFormat, nVersion, npRecord, nLength)) {
    fail(nFormat, "nDataSize Error");
    return -1;
  }
  return SentenceDecoder(nFormat, nVersion, npRecord, nLength, npOut, nOutSize).decode();
}

SentenceDecoder::SentenceDecoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                                 const unsigned char* npRecord, unsigned int nLength, unsigned char* npOut,
                                 unsigned int nOutSize)
    : mFormat(nFormat),
      mVersion(nVersion),
      mpRecord(npRecord),
      mpRecordEnd(npRecord + nLength),
      mpBase(npRecord),
      mpText(npOut),
      mpNext(npOut),
      mpTextEnd(npOut + nOutSize) {}

int SentenceDecoder::decode() {
  if (!appendAddress()) return -1;
  for (unsigned int i = 0; i < mFormat.mFieldNum; ++i) {
    if (!appendField(mFormat.mpFields[i])) return -1;
  }
  return appendCheckSum() ? static_cast<int>(mpNext - mpText) : -1;
}

bool SentenceDecoder::appendAddress() {
  const unsigned int lLength = static_cast<unsigned int>(strlen(mFormat.mpAddress));
  if (!mFormat.hasTalker()) return append(mFormat.mpAddress, lLength);
  const char lTalker[] = {'$', static_cast<char>(mpRecord[0]), static_cast<char>(mpRecord[1])};
  return append(lTalker, sizeof(lTalker)) && append(mFormat.mpAddress, lLength);
}

bool SentenceDecoder::appendField(const BinaryField& nField) {
  const unsigned char* const lpPlace = mpBase + nField.mOffset;
  switch (nField.mKind) {
    case BinaryField::REAL:
      return append(',') && appendReal(nField);
    case BinaryField::UNIT:
      return append(',') && append(nField.mpTexts, static_cast<unsigned int>(strlen(nField.mpTexts)));
    case BinaryField::NUMBER:
      return append(',') && appendNumber(nField, getUint(lpPlace, nField.mWidth));
    case BinaryField::YEAR:
      return append(',') && append("20", 2) && appendNumber(nField, *lpPlace);
    case BinaryField::HIGH_NIBBLE:
      return append(',') && appendNumber(nField, *lpPlace >> 4);
    case BinaryField::LOW_NIBBLE:
      return append(',') && appendNumber(nField, *lpPlace & 0x0Fu);
    case BinaryField::CODE:
      return append(',') && appendCode(nField);
    case BinaryField::DATE:
      return append(',') && appendDate(nField);
    case BinaryField::SATELLITES:
      return appendSatellites(nField);
    case BinaryField::BLOCKS:
      return appendBlocks();
  }
  return false;
}

bool SentenceDecoder::appendReal(const BinaryField& nField) {
  const int64_t lValue = getSint32(mpBase + nField.mOffset);
  const bool lHasSign = nField.mpTexts != nullptr;
  const int64_t lText = lHasSign && lValue < 0 ? -lValue : lValue;
  if (hasRoom()) {
    const int lLength =
        convertIntToFloatStr(lText, nField.mScale, nField.mDigits, reinterpret_cast<char*>(mpNext), NUMBER_SIZE);
    if (lLength < 0) return false;
    mpNext += lLength;
  } else if (!appendRealNearEnd(nField, lText)) {
    return false;
  }
  return !lHasSign || (append(',') && append(nField.mpTexts[lValue < 0 ? 1 : 0]));
}

bool SentenceDecoder::appendRealNearEnd(const BinaryField& nField, int64_t nValue) {
  char lText[NUMBER_SIZE];
  const int lLength = convertIntToFloatStr(nValue, nField.mScale, nField.mDigits, lText, NUMBER_SIZE);
  return lLength >= 0 && append(lText, static_cast<unsigned int>(lLength));
}

bool SentenceDecoder::appendNumber(const BinaryField& nField, uint32_t nValue) {
  if (leavesEmpty(nField, nValue == 0)) return true;
  if (!hasRoom()) return appendNumberNearEnd(nField, nValue);
  const int lLength = convertUint32ToStr(nValue, nField.mDigits, reinterpret_cast<char*>(mpNext), NUMBER_SIZE);
  if (lLength < 0) return fail("fromUint32() Error");
  mpNext += lLength;
  return true;
}

bool SentenceDecoder::appendNumberNearEnd(const BinaryField& nField, uint32_t nValue) {
  char lText[NUMBER_SIZE];
  const int lLength = convertUint32ToStr(nValue, nField.mDigits, lText, NUMBER_SIZE);
  if (lLength < 0) return fail("fromUint32() Error");
  return append(lText, static_cast<unsigned int>(lLength));
}

/// Numbers are written where they belong while there is room for any, and by way of a scratch near the end.
inline bool SentenceDecoder::hasRoom() const { return mpTextEnd - mpNext >= static_cast<std::ptrdiff_t>(NUMBER_SIZE); }

bool SentenceDecoder::appendCode(const BinaryField& nField) {
  const BinaryCode& lKind = *nField.mpCode;
  const unsigned int lCode = lKind.numberIn(mpBase[nField.mOffset]);
  const char* lpText = lKind.text(lCode);
  if (lpText == nullptr && lKind.mpUnknown == nullptr) lpText = lKind.mpTexts;
  if (lpText == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s=%d", mFormat.mpToSentence,
           lKind.mpUnknown, static_cast<int>(lCode));
    return true;
  }
  return *lpText == ' ' || append(lpText, lKind.mLength);
}

bool SentenceDecoder::appendDate(const BinaryField& nField) {
  for (unsigned int i = 0; i < 3; ++i) {
    if (!appendNumber(nField, mpBase[nField.mOffset + i])) return false;
  }
  return true;
}

bool SentenceDecoder::appendSatellites(const BinaryField& nField) {
  for (unsigned int i = 0; i < nField.mCount; ++i) {
    const unsigned char* const lpPlace = mpBase + nField.mOffset;
    char lDigits[NUMBER_SIZE];
    unsigned int lConsumed = 0;
    if (!append(',')) return false;
    const int lLength =
        mVersion.convertToSatelliteNumString(lpPlace, static_cast<unsigned int>(mpRecordEnd - lpPlace),
                                             reinterpret_cast<unsigned char*>(lDigits), sizeof(lDigits), &lConsumed);
    if (lLength < 0) return fail("convertToSatelliteNumString() Error");
    mpBase += lConsumed;
    if (leavesEmpty(nField, lLength == 1 && *lDigits == '0')) continue;
    if (lLength < nField.mDigits && !append('0')) return false;
    for (int j = 0; j < lLength; ++j) {
      if (!append(lDigits[j])) return false;
    }
  }
  return true;
}

bool SentenceDecoder::appendBlocks() {
  return eachGsvBlock(mpRecord, mVersion, [this](const unsigned char* npBlock) { return appendBlock(npBlock); });
}

bool SentenceDecoder::appendBlock(const unsigned char* npBlock) {
  mpBase = npBlock;
  mIsBlockWhole = mpBase[mVersion.getSatelliteNumSize() + GSV_VALID_OFFSET] != 0;
  mHasEmpty = false;
  for (const BinaryField& lField : GSV_BLOCK_FIELDS) {
    // A block with an empty field has one, whatever its values: the last field when no other is 0.
    const bool lIsLast = &lField == std::end(GSV_BLOCK_FIELDS) - 1;
    if (!(lIsLast && !mIsBlockWhole && !mHasEmpty ? append(',') : appendField(lField))) return false;
  }
  return true;
}

bool SentenceDecoder::appendCheckSum() {
  static const char HEX[] = "0123456789abcdef";
  if (!append('*')) return false;
  const unsigned int lSum =
      NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(mpText, static_cast<unsigned int>(mpNext - mpText));
  const char lEnd[] = {HEX[lSum >> 4 & 0x0F], HEX[lSum & 0x0F], '\r', '\n'};
  return append(lEnd, sizeof(lEnd));
}

bool SentenceDecoder::leavesEmpty(const BinaryField& nField, bool nIsZero) {
  const bool lLeavesEmpty = nIsZero && (nField.mIsZeroEmpty || !mIsBlockWhole);
  mHasEmpty = mHasEmpty || lLeavesEmpty;
  return lLeavesEmpty;
}

inline bool SentenceDecoder::append(char nChar) {
  if (mpNext == mpTextEnd) return fail("BufferSize Error");
  *mpNext++ = static_cast<unsigned char>(nChar);
  return true;
}

bool SentenceDecoder::append(const char* npText, unsigned int nLength) {
  if (static_cast<unsigned int>(mpTextEnd - mpNext) < nLength) return fail("BufferSize Error");
  memcpy(mpNext, npText, nLength);
  mpNext += nLength;
  return true;
}

bool SentenceDecoder::fail(const char* npWords) const { return nfw::fail(mFormat, npWords); }

}  // namespace nfw
