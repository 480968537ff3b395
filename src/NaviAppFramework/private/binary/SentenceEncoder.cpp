#include "SentenceEncoder.h"

#include <cstring>
#include <iterator>
#include <utility>

#include "CarefulEncoder.h"
#include "PlainScaled.h"
#include "SatelliteNumber.h"

namespace nfw {
namespace {

/// The walk. A field that has its plain form is taken by the short road where it stands, any other by CarefulEncoder.
///
/// The lists of fields are constants and every step is inlined, and nobody else is given the address of this object: so
/// a step knows its field when it is compiled, and the place reached stays in registers. Hand neither `this` nor a
/// reference to anything that is not inlined.
class SentenceEncoder {
 public:
  SentenceEncoder(CarefulEncoder& nCare, NmeaBinaryLogDataVersion0& nVersion, const char* npFirst,
                  unsigned char* npRecord)
      : mCare(nCare), mVersion(nVersion), mpRecord(npRecord), mpNext(npFirst), mpBase(npRecord) {}

  template <size_t... INDEX>
  [[gnu::always_inline]] bool encode(const BinaryField* npFields, std::index_sequence<INDEX...>) {
    return (encode(npFields[INDEX]) && ...);
  }

 private:
  [[gnu::always_inline]] bool encode(const BinaryField& nField) {
    switch (nField.mKind) {
      case BinaryField::REAL:
        return real(nField);
      case BinaryField::UNIT:
        ++mTarget;
        return true;
      case BinaryField::CODE:
        return code(nField);
      case BinaryField::DATE:
        return date(nField);
      case BinaryField::SATELLITES:
        return satellites(nField);
      case BinaryField::BLOCKS:
        return blocks();
      default:
        return maxOf(nField) == UINT8_MAX    ? number<uint8_t>(nField)
               : maxOf(nField) == UINT16_MAX ? number<uint16_t>(nField)
                                             : number<uint32_t>(nField);
    }
  }

  [[gnu::always_inline]] bool real(const BinaryField& nField) {
    int32_t lValue = 0;
    if (!moveTo(PlainScaled::read(start(), nField.mScale, nField.mpTexts, &lValue))) {
      return moveTo(mCare.real(place(), nField, mpBase));
    }
    putUint32(mpBase + nField.mOffset, static_cast<uint32_t>(lValue));
    return true;
  }

  [[gnu::always_inline]] bool code(const BinaryField& nField) {
    int lCode = -1;
    if (!moveTo(readCode(start(), *nField.mpCode, &lCode))) return moveTo(mCare.code(place(), nField, mpBase));
    putCode(nField, mpBase, lCode);
    return true;
  }

  [[gnu::always_inline]] static const char* readCode(const char* npText, const BinaryCode& nCode, int* npCode) {
    *npCode = nCode.find(npText, NmeaPlain::isEmpty(npText) ? 0 : nCode.mLength);
    if (*npCode < 0) return nullptr;
    return NmeaPlain::behind(NmeaPlain::isEmpty(npText) ? npText : npText + nCode.mLength);
  }

  [[gnu::always_inline]] bool date(const BinaryField& nField) {
    uint32_t lDate = 0;
    const char* const lpDate = start();
    const char* const lpEnd = Decimal::takeDigits(lpDate, &lDate);
    const bool lIsPlain = lpEnd == lpDate || lpEnd == lpDate + 6;
    if (!lIsPlain || !moveTo(NmeaPlain::behind(lpEnd))) return moveTo(mCare.date(place(), nField, mpBase));
    unsigned char* const lpPlace = mpBase + nField.mOffset;
    lpPlace[0] = static_cast<unsigned char>(lDate / 10000);
    lpPlace[1] = static_cast<unsigned char>(lDate / 100 % 100);
    lpPlace[2] = static_cast<unsigned char>(lDate % 100);
    return true;
  }

  template <class Number>
  [[gnu::always_inline]] bool number(const BinaryField& nField) {
    Number lNumber = 0;
    bool lIsEmpty = NmeaPlain::isEmpty(start());
    if (moveTo(NmeaPlain::number(start(), &lNumber))) {
      putNumber(nField, mpBase, lNumber);
    } else if (!moveTo(mCare.number(place(), nField, mpBase, &lIsEmpty))) {
      return false;
    }
    mIsBlockWhole = mIsBlockWhole && !lIsEmpty;
    return true;
  }

  [[gnu::always_inline]] bool satellites(const BinaryField& nField) {
    const unsigned int lPlainSize = SatelliteNumber::plainSize(mVersion);
    for (unsigned int i = 0; i < nField.mCount; ++i) {
      if (!satellite(nField, lPlainSize)) return false;
    }
    return true;
  }

  [[gnu::always_inline]] bool satellite(const BinaryField& nField, unsigned int nPlainSize) {
    uint16_t lNumber = 0;
    bool lIsEmpty = NmeaPlain::isEmpty(start());
    const char* const lpNext = NmeaPlain::number(start(), &lNumber);
    if (lpNext != nullptr && SatelliteNumber::fits(lNumber, nPlainSize)) {
      putUint(mpBase + nField.mOffset, nPlainSize, lNumber);
      mpBase += nPlainSize;
      moveTo(lpNext);
    } else {
      unsigned char* lpBase = mpBase;
      if (!moveTo(mCare.satellite(place(), nField, &lpBase, &lIsEmpty))) return false;
      mpBase = lpBase;
    }
    mIsBlockWhole = mIsBlockWhole && !lIsEmpty;
    return true;
  }

  [[gnu::always_inline]] bool blocks() {
    if (mpRecord[GSV_COUNT_OFFSET + 2] > GSV_MAX_VIEW) return moveTo(mCare.fail("SatelliteView is Over"));
    return eachGsvBlock(mpRecord, mVersion, [this](unsigned char* npBlock) { return block(npBlock); });
  }

  [[gnu::always_inline]] bool block(unsigned char* npBlock) {
    mpBase = npBlock;
    mIsBlockWhole = true;
    if (!encode(GSV_BLOCK_FIELDS, std::make_index_sequence<std::size(GSV_BLOCK_FIELDS)>())) return false;
    mpBase[GSV_VALID_OFFSET] = mIsBlockWhole ? 1 : 0;
    return true;
  }

  FieldPlace place() const { return {mpNext, mTarget}; }
  const char* start() const { return FieldScanner::fieldAt(place()); }

  [[gnu::always_inline]] bool moveTo(const char* npNext) {
    if (__builtin_expect(npNext == nullptr, 0)) return false;
    mpNext = npNext;
    mTarget = 1;
    return true;
  }

  CarefulEncoder& mCare;
  NmeaBinaryLogDataVersion0& mVersion;
  unsigned char* const mpRecord;
  const char* mpNext;         // where the search for the next field starts
  unsigned int mTarget = 1;   // how many fields on it is
  unsigned char* mpBase;      // where offsets count from: moves on behind satellite numbers
  bool mIsBlockWhole = true;  // no field of the block was empty
};

const char* argumentError(const unsigned char* npSentence, unsigned int nLength, const unsigned char* npOut,
                          unsigned int nOutSize, unsigned int nRecordSize) {
  if (npSentence == nullptr || nLength == 0 || npOut == nullptr) return "Argument Error";
  if (nOutSize < nRecordSize) return "nBufferSize Error";
  return nLength > FieldScanner::MAX_SENTENCE ? "nSentenceSize Error" : nullptr;
}

}  // namespace

template <const BinaryRecordFormat& FORMAT>
int encodeSentence(NmeaBinaryLogDataVersion0& nVersion, const unsigned char* npSentence, unsigned int nLength,
                   unsigned char* npOut, unsigned int nOutSize) {
  const unsigned int lSize = FORMAT.size(nVersion);
  if (const char* const lpError = argumentError(npSentence, nLength, npOut, nOutSize, lSize)) {
    CarefulEncoder::fail(FORMAT, lpError);
    return -1;
  }
  const FieldScanner lFields(npSentence, nLength);
  CarefulEncoder lCare(FORMAT, nVersion, lFields, npOut + nOutSize);
  memset(npOut, 0, CODE_OFFSET + 1);
  if (FORMAT.hasTalker()) memcpy(npOut, lFields.talker(), TALKER_SIZE);
  SentenceEncoder lEncoder(lCare, nVersion, lFields.first(), npOut);
  if (!lEncoder.encode(FORMAT.mpFields, std::make_index_sequence<FORMAT.mFieldNum>())) return -1;
  return static_cast<int>(&FORMAT == &GSV_FORMAT ? gsvRecordSize(npOut, nVersion) : lSize);
}

#define NFW_ENCODER(FORMAT)                                                                                           \
  template int encodeSentence<FORMAT>(NmeaBinaryLogDataVersion0&, const unsigned char*, unsigned int, unsigned char*, \
                                      unsigned int)
NFW_ENCODER(GGA_FORMAT);
NFW_ENCODER(GLL_FORMAT);
NFW_ENCODER(GSA_FORMAT);
NFW_ENCODER(GSV_FORMAT);
NFW_ENCODER(RMC_FORMAT);
NFW_ENCODER(VTG_FORMAT);
NFW_ENCODER(ZDA_FORMAT);
NFW_ENCODER(PUBX_FORMAT);
#undef NFW_ENCODER

}  // namespace nfw
