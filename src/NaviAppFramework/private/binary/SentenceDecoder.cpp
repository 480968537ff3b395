#include "SentenceDecoder.h"

#include <cstddef>
#include <cstring>
#include <iterator>
#include <utility>

#include "BinaryNumber.h"
#include "Digits.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "NfwNmeaCheckSumCalclator.h"
#include "SatelliteNumber.h"

namespace nfw {
namespace {

const unsigned int NUMBER_SIZE = 16;  // no number is longer

bool fail(const BinaryRecordFormat& nFormat, const char* npWords) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s", nFormat.mpToSentence, npWords);
  return false;
}

void noteUnknown(const BinaryRecordFormat& nFormat, const BinaryCode& nKind, unsigned int nCode) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s=%d", nFormat.mpToSentence,
         nKind.mpUnknown, static_cast<int>(nCode));
}

// Texts near the end of the room: the end of what is written, null, logged, when it does not fit.
unsigned char* putNearEnd(const BinaryRecordFormat& nFormat, unsigned char* npNext, const unsigned char* npEnd,
                          const char* npText, size_t nLength) {
  if (static_cast<size_t>(npEnd - npNext) < nLength) {
    fail(nFormat, "BufferSize Error");
    return nullptr;
  }
  memcpy(npNext, npText, nLength);
  return npNext + nLength;
}

unsigned char* putNumberNearEnd(const BinaryRecordFormat& nFormat, unsigned char* npNext, const unsigned char* npEnd,
                                uint32_t nValue, unsigned int nDigits) {
  char lText[NUMBER_SIZE];
  return putNearEnd(nFormat, npNext, npEnd, lText, static_cast<size_t>(Digits::putAll(lText, nValue, nDigits) - lText));
}

// Negative ones too: the sign stands behind what fills the field.
unsigned char* putRealWithCare(const BinaryRecordFormat& nFormat, unsigned char* npNext, const unsigned char* npEnd,
                               int64_t nValue, const BinaryField& nField) {
  char lText[NUMBER_SIZE];
  const int lLength = convertIntToFloatStr(nValue, nField.mScale, nField.mDigits, lText, NUMBER_SIZE);
  return lLength < 0 ? nullptr : putNearEnd(nFormat, npNext, npEnd, lText, static_cast<size_t>(lLength));
}

/// The walk. The lists of fields are constants and every step is inlined, and nobody else is given the address of this
/// object: so a step knows its field when it is compiled, and the ends of both texts stay in registers. Hand neither
/// `this` nor a reference to anything that is not inlined.
class SentenceDecoder {
 public:
  /// The record is whole.
  SentenceDecoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord,
                  const unsigned char* npRecordEnd, unsigned char* npText, unsigned char* npTextEnd)
      : mFormat(nFormat),
        mVersion(nVersion),
        mpRecord(npRecord),
        mpRecordEnd(npRecordEnd),
        mpBase(npRecord),
        mpNext(npText),
        mpTextEnd(npTextEnd) {}

  const unsigned char* next() const { return mpNext; }

  [[gnu::always_inline]] bool address() {
    const unsigned int lLength = static_cast<unsigned int>(strlen(mFormat.mpAddress));
    if (!mFormat.hasTalker()) return append(mFormat.mpAddress, lLength);
    const char lTalker[] = {'$', static_cast<char>(mpRecord[0]), static_cast<char>(mpRecord[1])};
    return append(lTalker, sizeof(lTalker)) && append(mFormat.mpAddress, lLength);
  }

  template <size_t... INDEX>
  [[gnu::always_inline]] bool decode(const BinaryField* npFields, std::index_sequence<INDEX...>) {
    return (decode(npFields[INDEX]) && ...);
  }

  [[gnu::always_inline]] bool checkSum(const unsigned char* npText) {
    static const char HEX[] = "0123456789abcdef";
    if (!append('*')) return false;
    const unsigned int lSum =
        NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(npText, static_cast<unsigned int>(mpNext - npText));
    const char lEnd[] = {HEX[lSum >> 4 & 0x0F], HEX[lSum & 0x0F], '\r', '\n'};
    return append(lEnd, sizeof(lEnd));
  }

 private:
  [[gnu::always_inline]] bool decode(const BinaryField& nField) {
    const unsigned char* const lpPlace = mpBase + nField.mOffset;
    switch (nField.mKind) {
      case BinaryField::REAL:
        return append(',') && real(nField);
      case BinaryField::UNIT:
        return append(',') && append(nField.mpTexts, static_cast<unsigned int>(strlen(nField.mpTexts)));
      case BinaryField::NUMBER:
        return append(',') && number(nField, getUint(lpPlace, nField.mWidth));
      case BinaryField::YEAR:
        return append(',') && append("20", 2) && number(nField, *lpPlace);
      case BinaryField::HIGH_NIBBLE:
        return append(',') && number(nField, *lpPlace >> 4);
      case BinaryField::LOW_NIBBLE:
        return append(',') && number(nField, *lpPlace & 0x0Fu);
      case BinaryField::CODE:
        return append(',') && code(nField);
      case BinaryField::DATE:
        return append(',') && number(nField, lpPlace[0]) && number(nField, lpPlace[1]) && number(nField, lpPlace[2]);
      case BinaryField::SATELLITES:
        return satellites(nField);
      case BinaryField::BLOCKS:
        return eachGsvBlock(mpRecord, mVersion, [this](const unsigned char* npBlock) { return block(npBlock); });
    }
    return false;
  }

  [[gnu::always_inline]] bool real(const BinaryField& nField) {
    const int32_t lStored = getSint32(mpBase + nField.mOffset);
    const bool lHasSign = nField.mpTexts != nullptr;
    const int64_t lValue = lHasSign && lStored < 0 ? -int64_t{lStored} : lStored;
    if (!moveTo(hasRoom() && lValue >= 0
                    ? Digits::putScaled(mpNext, static_cast<uint32_t>(lValue), nField.mScale, nField.mDigits)
                    : putRealWithCare(mFormat, mpNext, mpTextEnd, lValue, nField))) {
      return false;
    }
    return !lHasSign || (append(',') && append(nField.mpTexts[lStored < 0 ? 1 : 0]));
  }

  [[gnu::always_inline]] bool number(const BinaryField& nField, uint32_t nValue) {
    if (leavesEmpty(nField, nValue == 0)) return true;
    return moveTo(hasRoom() ? Digits::putAll(mpNext, nValue, nField.mDigits)
                            : putNumberNearEnd(mFormat, mpNext, mpTextEnd, nValue, nField.mDigits));
  }

  [[gnu::always_inline]] bool code(const BinaryField& nField) {
    const BinaryCode& lKind = *nField.mpCode;
    const unsigned int lCode = lKind.numberIn(mpBase[nField.mOffset]);
    const char* lpText = lKind.text(lCode);
    if (lpText == nullptr && lKind.mpUnknown == nullptr) lpText = lKind.mpTexts;
    if (lpText == nullptr) {
      noteUnknown(mFormat, lKind, lCode);
      return true;
    }
    return *lpText == ' ' || append(lpText, lKind.mLength);
  }

  [[gnu::always_inline]] bool satellites(const BinaryField& nField) {
    const unsigned int lPlainSize = SatelliteNumber::plainSize(mVersion);
    for (unsigned int i = 0; i < nField.mCount; ++i) {
      if (!append(',') || !(lPlainSize != 0 ? satellite(nField, lPlainSize) : askedSatellite(nField))) return false;
    }
    return true;
  }

  [[gnu::always_inline]] bool satellite(const BinaryField& nField, unsigned int nPlainSize) {
    const uint32_t lNumber = getUint(mpBase + nField.mOffset, nPlainSize);
    mpBase += nPlainSize;
    return number(nField, lNumber);
  }

  [[gnu::always_inline]] bool askedSatellite(const BinaryField& nField) {
    const unsigned char* const lpPlace = mpBase + nField.mOffset;
    char lDigits[NUMBER_SIZE];
    unsigned int lConsumed = 0;
    const int lLength =
        mVersion.convertToSatelliteNumString(lpPlace, static_cast<unsigned int>(mpRecordEnd - lpPlace),
                                             reinterpret_cast<unsigned char*>(lDigits), sizeof(lDigits), &lConsumed);
    if (lLength < 0) return fail(mFormat, "convertToSatelliteNumString() Error");
    mpBase += lConsumed;
    if (leavesEmpty(nField, lLength == 1 && *lDigits == '0')) return true;
    if (lLength < nField.mDigits && !append('0')) return false;
    return moveTo(putNearEnd(mFormat, mpNext, mpTextEnd, lDigits, static_cast<size_t>(lLength)));
  }

  [[gnu::always_inline]] bool block(const unsigned char* npBlock) {
    mpBase = npBlock;
    mIsBlockWhole = mpBase[mVersion.getSatelliteNumSize() + GSV_VALID_OFFSET] != 0;
    mHasEmpty = false;
    return decode(GSV_BLOCK_FIELDS, std::make_index_sequence<std::size(GSV_BLOCK_FIELDS) - 1>()) &&
           lastOfBlock(*std::rbegin(GSV_BLOCK_FIELDS));
  }

  // A block with an empty field has one, whatever its values: the last field when no other is 0.
  [[gnu::always_inline]] bool lastOfBlock(const BinaryField& nField) {
    return !mIsBlockWhole && !mHasEmpty ? append(',') : decode(nField);
  }

  [[gnu::always_inline]] bool leavesEmpty(const BinaryField& nField, bool nIsZero) {
    const bool lLeavesEmpty = nIsZero && (nField.mIsZeroEmpty || !mIsBlockWhole);
    mHasEmpty = mHasEmpty || lLeavesEmpty;
    return lLeavesEmpty;
  }

  bool hasRoom() const { return mpTextEnd - mpNext >= static_cast<std::ptrdiff_t>(NUMBER_SIZE); }

  [[gnu::always_inline]] bool append(char nChar) {
    if (__builtin_expect(mpNext == mpTextEnd, 0)) return fail(mFormat, "BufferSize Error");
    *mpNext++ = static_cast<unsigned char>(nChar);
    return true;
  }

  [[gnu::always_inline]] bool append(const char* npText, unsigned int nLength) {
    if (__builtin_expect(static_cast<unsigned int>(mpTextEnd - mpNext) < nLength, 0)) {
      return fail(mFormat, "BufferSize Error");
    }
    memcpy(mpNext, npText, nLength);
    mpNext += nLength;
    return true;
  }

  [[gnu::always_inline]] bool moveTo(unsigned char* npNext) {
    if (__builtin_expect(npNext == nullptr, 0)) return false;
    mpNext = npNext;
    return true;
  }

  const BinaryRecordFormat& mFormat;
  NmeaBinaryLogDataVersion0& mVersion;
  const unsigned char* const mpRecord;
  const unsigned char* const mpRecordEnd;
  const unsigned char* mpBase;  // where offsets count from: moves on behind satellite numbers
  unsigned char* mpNext;
  unsigned char* const mpTextEnd;
  bool mIsBlockWhole = true;  // the block was encoded from fields of which none was empty
  bool mHasEmpty = false;     // an empty field of the block has been written
};

bool isWhole(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord,
             unsigned int nLength) {
  if (&nFormat != &GSV_FORMAT) return nLength >= nFormat.size(nVersion);
  return nLength >= GSV_HEADER_SIZE && nLength >= gsvRecordSize(npRecord, nVersion);
}

const char* argumentError(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                          const unsigned char* npRecord, unsigned int nLength, const unsigned char* npOut) {
  if (npRecord == nullptr || nLength == 0 || npOut == nullptr) return "Argument Error";
  return isWhole(nFormat, nVersion, npRecord, nLength) ? nullptr : "nDataSize Error";
}

}  // namespace

template <const BinaryRecordFormat& FORMAT>
int decodeSentence(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npRecord, unsigned int nLength,
                   unsigned char* npOut, unsigned int nOutSize) {
  if (const char* const lpError = argumentError(FORMAT, nVersion, npRecord, nLength, npOut)) {
    fail(FORMAT, lpError);
    return -1;
  }
  SentenceDecoder lDecoder(FORMAT, nVersion, npRecord, npRecord + nLength, npOut, npOut + nOutSize);
  const bool lIsDecoded = lDecoder.address() &&
                          lDecoder.decode(FORMAT.mpFields, std::make_index_sequence<FORMAT.mFieldNum>()) &&
                          lDecoder.checkSum(npOut);
  return lIsDecoded ? static_cast<int>(lDecoder.next() - npOut) : -1;
}

#define NFW_DECODER(FORMAT)                                                                                           \
  template int decodeSentence<FORMAT>(NmeaBinaryLogDataVersion0&, const unsigned char*, unsigned int, unsigned char*, \
                                      unsigned int)
NFW_DECODER(GGA_FORMAT);
NFW_DECODER(GLL_FORMAT);
NFW_DECODER(GSA_FORMAT);
NFW_DECODER(GSV_FORMAT);
NFW_DECODER(RMC_FORMAT);
NFW_DECODER(VTG_FORMAT);
NFW_DECODER(ZDA_FORMAT);
NFW_DECODER(PUBX_FORMAT);
#undef NFW_DECODER

}  // namespace nfw
