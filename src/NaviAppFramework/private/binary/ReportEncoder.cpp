#include "ReportEncoder.h"

#include <cstring>

#include "BinaryNumber.h"
#include "BinaryRecordLists.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"

namespace nfw {

ReportEncoder::ReportEncoder(const BinaryRecordFormat& nFormat, NmeaBinaryLogDataVersion0& nVersion,
                             const ReportValue* npValues)
    : mFormat(nFormat), mVersion(nVersion), mpNext(npValues) {}

int ReportEncoder::encode(const char* npTalker, unsigned char* npOut, unsigned int nOutSize) {
  if (npOut == nullptr || nOutSize < mFormat.size(mVersion)) {
    fail(npOut == nullptr ? "Argument Error" : "nBufferSize Error");
    return -1;
  }
  mpRecord = mpBase = npOut;
  mpRecordEnd = npOut + nOutSize;
  memset(npOut, 0, CODE_OFFSET + 1);
  if (npTalker != nullptr) memcpy(npOut, npTalker, TALKER_SIZE);
  for (unsigned int i = 0; i < mFormat.mFieldNum; ++i) {
    if (!encodeField(mFormat.mpFields[i])) return -1;
  }
  return static_cast<int>(&mFormat == &GSV_FORMAT ? gsvRecordSize(mpRecord, mVersion) : mFormat.size(mVersion));
}

bool ReportEncoder::encodeField(const BinaryField& nField) {
  switch (nField.mKind) {
    case BinaryField::REAL:
      encodeReal(nField);
      return true;
    case BinaryField::UNIT:
      return true;
    case BinaryField::NUMBER:
    case BinaryField::YEAR:
    case BinaryField::HIGH_NIBBLE:
    case BinaryField::LOW_NIBBLE:
      putNumber(nField, mpBase, (mpNext++)->mNumber);
      return true;
    case BinaryField::CODE:
      return encodeCode(nField);
    case BinaryField::DATE:
      for (unsigned int i = 0; i < 3; ++i) mpBase[nField.mOffset + i] = static_cast<unsigned char>((mpNext++)->mNumber);
      return true;
    case BinaryField::SATELLITES:
      return encodeSatellites(nField);
    case BinaryField::BLOCKS:
      return encodeBlocks();
  }
  return false;
}

// A real that is too large is stored as 0, and the record goes on.
void ReportEncoder::encodeReal(const BinaryField& nField) {
  const double lReal = (mpNext++)->mReal;
  int32_t lValue = 0;
  if (!convertFloatToSint32(lReal, nField.mScale, &lValue)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::parseFloat64FieldToSint32(): convertFloatToSint32() lField Error: %s "
           "nField=%lf",
           nField.mpName, lReal);
  }
  putUint32(mpBase + nField.mOffset, static_cast<uint32_t>(lValue));
}

bool ReportEncoder::encodeCode(const BinaryField& nField) {
  const ReportValue& lValue = *mpNext++;
  const BinaryCode& lKind = *nField.mpCode;
  int lCode = 0;
  if (lValue.mKind == ReportValue::NUMBER) {
    lCode = lKind.text(lValue.mNumber) != nullptr ? static_cast<int>(lValue.mNumber) : -1;
  } else if (lValue.mLetter != '\0') {
    lCode = lKind.find(&lValue.mLetter, 1);
  }
  if (lCode < 0 && lKind.mpRefuse != nullptr) {
    const char lText[] = {lValue.mLetter, '\0'};
    lKind.mpRefuse(lText);
    return fail(nField.mpFailed);
  }
  putCode(nField, mpBase, lCode < 0 ? 0 : lCode);
  return true;
}

bool ReportEncoder::encodeSatellites(const BinaryField& nField) {
  for (unsigned int i = 0; i < nField.mCount; ++i) {
    unsigned char* const lpPlace = mpBase + nField.mOffset;
    const int lSize = mVersion.convertFromSatelliteNumUint32((mpNext++)->mNumber, lpPlace,
                                                             static_cast<unsigned int>(mpRecordEnd - lpPlace));
    if (lSize < 0) return fail("convertFromSatelliteNumUint32() Error");
    mpBase += lSize;
  }
  return true;
}

bool ReportEncoder::encodeBlocks() {
  if (mpRecord[GSV_COUNT_OFFSET + 2] > GSV_MAX_VIEW) return fail("SatelliteView is Over");
  return eachGsvBlock(mpRecord, mVersion, [this](unsigned char* npBlock) { return encodeBlock(npBlock); });
}

bool ReportEncoder::encodeBlock(unsigned char* npBlock) {
  mpBase = npBlock;
  for (const BinaryField& lField : GSV_BLOCK_FIELDS) {
    if (!encodeField(lField)) return false;
  }
  mpBase[GSV_VALID_OFFSET] = (mpNext++)->mNumber != 0 ? 1 : 0;
  return true;
}

bool ReportEncoder::fail(const char* npWords) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::%s(): %s", mFormat.mpFromData, npWords);
  return false;
}

}  // namespace nfw
