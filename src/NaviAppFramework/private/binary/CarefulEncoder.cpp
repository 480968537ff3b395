#include "CarefulEncoder.h"

#include <cstring>

#include "BinaryNumber.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "utl/StringUtil.h"

namespace nfw {

const char* CarefulEncoder::real(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase) {
  Text lText;
  Text lSign = "";
  const char* lpNext = extract(nPlace, nField, lText);
  if (lpNext != nullptr && nField.mpTexts != nullptr) {
    lpNext = FieldScanner::extractNmeaField({lpNext, 1}, lSign);
    if (lpNext == nullptr) return fail(nField.mpFailed);
  }
  if (lpNext == nullptr) return nullptr;
  const bool lIsNegated = nField.mpTexts != nullptr && lSign[0] == nField.mpTexts[1] && lSign[1] == '\0';
  int32_t lValue = 0;
  if (!convertFloatStrToSint32(lText, nField.mScale, lIsNegated, &lValue) && mIsValid) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::parseSentenceFieldToSint32(): convertFloatStrToSint32() lField Error: %s "
           "lSentenceField=%s",
           nField.mpName, lText);
  }
  putUint32(npBase + nField.mOffset, static_cast<uint32_t>(lValue));
  return lpNext;
}

const char* CarefulEncoder::code(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase) {
  Text lText;
  const char* const lpNext = extract(nPlace, nField, lText);
  if (lpNext == nullptr) return nullptr;
  const int lCode = nField.mpCode->find(lText, static_cast<unsigned int>(strlen(lText)));
  if (lCode < 0 && nField.mpCode->mpRefuse != nullptr) {
    nField.mpCode->mpRefuse(lText);
    return fail(nField.mpFailed);
  }
  putCode(nField, npBase, lCode < 0 ? 0 : lCode);
  return lpNext;
}

const char* CarefulEncoder::date(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase) {
  Text lText;
  const char* const lpNext = extract(nPlace, nField, lText);
  if (lpNext == nullptr) return nullptr;
  const size_t lLength = strlen(lText);
  for (unsigned int i = 0; i < 3; ++i) {
    char lPart[3];
    uint8_t lValue = 0;
    const bool lIsPart = 2 * i < lLength && utl::copyStr(lPart, sizeof(lPart), lText + 2 * i, 2);
    if (lLength != 0 && (!lIsPart || !utl::toUint8(lPart, &lValue))) return fail(nField.mpFailed);
    npBase[nField.mOffset + i] = lValue;
  }
  return lpNext;
}

const char* CarefulEncoder::number(FieldPlace nPlace, const BinaryField& nField, unsigned char* npBase,
                                   bool* npIsEmpty) {
  Text lText;
  const char* const lpNext = extract(nPlace, nField, lText);
  if (lpNext == nullptr) return nullptr;
  uint32_t lValue = 0;
  *npIsEmpty = lText[0] == '\0';
  if (!*npIsEmpty && (!utl::toUint32(lText, &lValue) || lValue > maxOf(nField))) return fail(nField.mpFailed);
  putNumber(nField, npBase, lValue);
  return lpNext;
}

const char* CarefulEncoder::satellite(FieldPlace nPlace, const BinaryField& nField, unsigned char** nppBase,
                                      bool* npIsEmpty) {
  Text lText;
  const char* const lpNext = extract(nPlace, nField, lText);
  if (lpNext == nullptr) return nullptr;
  *npIsEmpty = lText[0] == '\0';
  unsigned char* const lpPlace = *nppBase + nField.mOffset;
  const int lSize =
      mVersion.convertFromSatelliteNumString(lText, lpPlace, static_cast<unsigned int>(mpRecordEnd - lpPlace));
  if (lSize < 0) return fail(nField.mpFailed);
  *nppBase += lSize;
  return lpNext;
}

const char* CarefulEncoder::extract(FieldPlace nPlace, const BinaryField& nField, Text& nText) {
  if (!knowStatus()) return nullptr;
  const char* const lpNext = FieldScanner::extractNmeaField(nPlace, nText);
  return lpNext != nullptr ? lpNext : fail(nField.mpMissing);
}

bool CarefulEncoder::knowStatus() {
  if (mIsStatusKnown || mFormat.mStatusField == 0) return true;
  Text lStatus;
  if (FieldScanner::extractNmeaField({mFields.first(), mFormat.mStatusField}, lStatus) == nullptr) {
    fail(mFormat.mpStatusMissing);
    return false;
  }
  mIsStatusKnown = true;
  mIsValid = mFormat.mpIsValid(lStatus);
  return true;
}

const char* CarefulEncoder::fail(const BinaryRecordFormat& nFormat, const char* npWords) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s", nFormat.mpFromSentence, npWords);
  return nullptr;
}

}  // namespace nfw
