#include "SentenceEncoder.h"

#include <cstring>

#include "BinaryNumber.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "utl/StringUtil.h"

namespace nfw {
namespace {

uint32_t maxOf(const BinaryField& nField) {
  const unsigned int lWidth = nField.mKind == BinaryField::YEAR ? 2 : nField.mWidth;
  return 0xFFFFFFFFU >> (32 - 8 * lWidth);
}

bool fail(const BinaryRecordFormat& nFormat, const char* npWords) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s", nFormat.mpFromSentence, npWords);
  return false;
}

}  // namespace

int encodeSentence(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                   const unsigned char* npSentence, unsigned int nLength, unsigned char* npOut, unsigned int nOutSize) {
  const char* lpError = nullptr;
  if (npSentence == nullptr || nLength == 0 || npOut == nullptr) {
    lpError = "Argument Error";
  } else if (nOutSize < nFormat.size(nVersion)) {
    lpError = "nBufferSize Error";
  } else if (nLength > FieldScanner::MAX_SENTENCE) {
    lpError = "nSentenceSize Error";
  }
  if (lpError != nullptr) {
    fail(nFormat, lpError);
    return -1;
  }
  return SentenceEncoder(nFormat, nVersion, npSentence, nLength, npOut, nOutSize).encode();
}

SentenceEncoder::SentenceEncoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                                 const unsigned char* npSentence, unsigned int nLength, unsigned char* npOut,
                                 unsigned int nOutSize)
    : mFormat(nFormat),
      mVersion(nVersion),
      mFields(npSentence, nLength),
      mpRecord(npOut),
      mpRecordEnd(npOut + nOutSize),
      mpBase(npOut) {}

int SentenceEncoder::encode() {
  memset(mpRecord, 0, TALKER_SIZE);
  if (mFormat.hasTalker()) memcpy(mpRecord, mFields.talker(), TALKER_SIZE);
  mpRecord[CODE_OFFSET] = 0;
  for (unsigned int i = 0; i < mFormat.mFieldNum; ++i) {
    if (!encodeField(mFormat.mpFields[i])) return -1;
  }
  return static_cast<int>(&mFormat == &GSV_FORMAT ? gsvRecordSize(mpRecord, mVersion) : mFormat.size(mVersion));
}

inline bool SentenceEncoder::encodeField(const BinaryField& nField) {
  switch (nField.mKind) {
    case BinaryField::REAL:
      return encodeReal(nField);
    case BinaryField::UNIT:
      mFields.skip();
      return true;
    case BinaryField::CODE:
      return encodeCode(nField);
    case BinaryField::DATE:
      return encodeDate(nField);
    case BinaryField::SATELLITES:
      return encodeSatellites(nField);
    case BinaryField::BLOCKS:
      return encodeBlocks();
    default:
      return encodeNumber(nField);
  }
}

bool SentenceEncoder::encodeReal(const BinaryField& nField) {
  const std::optional<int32_t> lValue = mFields.takeScaled(nField.mScale, nField.mpTexts);
  if (!lValue) return encodeRealWithCare(nField);
  putUint32(mpBase + nField.mOffset, static_cast<uint32_t>(*lValue));
  return true;
}

// A number that does not convert is stored as 0, and the record goes on.
bool SentenceEncoder::encodeRealWithCare(const BinaryField& nField) {
  Text lText;
  Text lSign = "";
  if (!knowStatus() || !extract(nField.mpMissing, lText)) return false;
  if (nField.mpTexts != nullptr && !extract(nField.mpFailed, lSign)) return false;
  const bool lIsNegated = nField.mpTexts != nullptr && lSign[0] == nField.mpTexts[1] && lSign[1] == '\0';
  int32_t lValue = 0;
  if (!convertFloatStrToSint32(lText, nField.mScale, lIsNegated, &lValue) && mIsValid) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::parseSentenceFieldToSint32(): convertFloatStrToSint32() lField Error: %s "
           "lSentenceField=%s",
           nField.mpName, lText);
  }
  putUint32(mpBase + nField.mOffset, static_cast<uint32_t>(lValue));
  return true;
}

bool SentenceEncoder::encodeCode(const BinaryField& nField) {
  const std::optional<char> lLetter = nField.mpCode->mLength == 1 ? mFields.takeLetter() : std::nullopt;
  if (!lLetter) return encodeCodeWithCare(nField);
  const int lCode = nField.mpCode->find(&*lLetter, *lLetter != '\0' ? 1 : 0);
  if (lCode >= 0) return takeCode(nField, lCode);
  const char lText[] = {*lLetter, '\0'};
  return refuseCode(nField, lText);
}

bool SentenceEncoder::encodeCodeWithCare(const BinaryField& nField) {
  Text lText;
  unsigned int lLength = 0;
  if (!takeText(nField, lText, &lLength)) return false;
  const int lCode = nField.mpCode->find(lText, lLength);
  return lCode >= 0 ? takeCode(nField, lCode) : refuseCode(nField, lText);
}

inline bool SentenceEncoder::takeCode(const BinaryField& nField, int nCode) {
  putCode(nField, mpBase, nCode);
  return true;
}

bool SentenceEncoder::refuseCode(const BinaryField& nField, const char* npText) {
  if (nField.mpCode->mpRefuse == nullptr) return takeCode(nField, 0);
  if (!knowStatus()) return false;
  nField.mpCode->mpRefuse(npText);
  return fail(nField.mpFailed);
}

bool SentenceEncoder::encodeDate(const BinaryField& nField) {
  const std::optional<uint32_t> lDate = mFields.takeDate();
  if (!lDate) return encodeDateWithCare(nField);
  unsigned char* const lpPlace = mpBase + nField.mOffset;
  lpPlace[0] = static_cast<unsigned char>(*lDate / 10000);
  lpPlace[1] = static_cast<unsigned char>(*lDate / 100 % 100);
  lpPlace[2] = static_cast<unsigned char>(*lDate % 100);
  return true;
}

// Three pairs of characters, of which the last may be cut short; what follows is of no account.
bool SentenceEncoder::encodeDateWithCare(const BinaryField& nField) {
  Text lText;
  unsigned int lLength = 0;
  if (!takeText(nField, lText, &lLength)) return false;
  for (unsigned int i = 0; i < 3; ++i) {
    char lPart[3];
    uint8_t lValue = 0;
    const bool lIsPart = 2 * i < lLength && utl::copyStr(lPart, sizeof(lPart), lText + 2 * i, 2);
    if (lLength != 0 && (!lIsPart || !utl::toUint8(lPart, &lValue))) return fail(nField.mpFailed);
    mpBase[nField.mOffset + i] = lValue;
  }
  return true;
}

bool SentenceEncoder::encodeSatellites(const BinaryField& nField) {
  for (unsigned int i = 0; i < nField.mCount; ++i) {
    Text lText;
    unsigned int lLength = 0;
    if (!takeText(nField, lText, &lLength)) return false;
    mIsBlockWhole = mIsBlockWhole && lLength != 0;
    unsigned char* const lpPlace = mpBase + nField.mOffset;
    const int lSize =
        mVersion.convertFromSatelliteNumString(lText, lpPlace, static_cast<unsigned int>(mpRecordEnd - lpPlace));
    if (lSize < 0) return fail(nField.mpFailed);
    mpBase += lSize;
  }
  return true;
}

bool SentenceEncoder::encodeBlocks() {
  if (mpRecord[GSV_COUNT_OFFSET + 2] > GSV_MAX_VIEW) return fail("SatelliteView is Over");
  return eachGsvBlock(mpRecord, mVersion, [this](unsigned char* npBlock) { return encodeBlock(npBlock); });
}

bool SentenceEncoder::encodeBlock(unsigned char* npBlock) {
  mpBase = npBlock;
  mIsBlockWhole = true;
  for (const BinaryField& lField : GSV_BLOCK_FIELDS) {
    if (!encodeField(lField)) return false;
  }
  mpBase[GSV_VALID_OFFSET] = mIsBlockWhole ? 1 : 0;
  return true;
}

bool SentenceEncoder::encodeNumber(const BinaryField& nField) {
  const FieldScanner::Unsigned lNumber = mFields.takeUnsigned(maxOf(nField));
  if (!lNumber.mIsTaken) return encodeNumberWithCare(nField);
  mIsBlockWhole = mIsBlockWhole && !lNumber.mIsEmpty;
  putNumber(nField, mpBase, lNumber.mValue);
  return true;
}

bool SentenceEncoder::encodeNumberWithCare(const BinaryField& nField) {
  Text lText;
  if (!knowStatus() || !extract(nField.mpMissing, lText)) return false;
  uint32_t lValue = 0;
  if (lText[0] == '\0') {
    mIsBlockWhole = false;
  } else if (!utl::toUint32(lText, &lValue) || lValue > maxOf(nField)) {
    return fail(nField.mpFailed);
  }
  putNumber(nField, mpBase, lValue);
  return true;
}

bool SentenceEncoder::takeText(const BinaryField& nField, Text& nText, unsigned int* npLength) {
  if (mFields.takeText(nText, npLength)) return true;
  if (!knowStatus() || !extract(nField.mpMissing, nText)) return false;
  *npLength = static_cast<unsigned int>(strlen(nText));
  return true;
}

bool SentenceEncoder::extract(const char* npMissing, Text& nText) {
  return mFields.extractNmeaField(nText) || fail(npMissing);
}

bool SentenceEncoder::knowStatus() {
  if (mIsStatusKnown || mFormat.mStatusField == 0) return true;
  Text lStatus;
  if (!mFields.extractNmeaField(mFormat.mStatusField, lStatus)) return fail(mFormat.mpStatusMissing);
  mIsStatusKnown = true;
  mIsValid = mFormat.mpIsValid(lStatus);
  return true;
}

bool SentenceEncoder::fail(const char* npWords) const { return nfw::fail(mFormat, npWords); }

}  // namespace nfw
