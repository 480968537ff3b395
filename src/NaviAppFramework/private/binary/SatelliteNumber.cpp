#include "SatelliteNumber.h"

#include <cstring>
#include <typeinfo>

#include "Digits.h"
#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "NfwNmeaBinaryLogDataVersion1.h"
#include "utl/StringUtil.h"

namespace nfw {

int SatelliteNumber::fromString(char* npText, unsigned char* npOut, unsigned int nOutSize) const {
  static const char OPERATION[] = "convertFromSatelliteNumString";
  if (npText == nullptr || npOut == nullptr) return fail(OPERATION, "Argument Error");
  if (nOutSize < mSize) return fail(OPERATION, "BufferSize Error");
  uint32_t lNumber = 0;
  if (!read(npText, &lNumber)) return fail(OPERATION, mSize == 1 ? "toUint8() Error" : "toUint16() Error");
  putUint(npOut, mSize, lNumber);
  return static_cast<int>(mSize);
}

bool SatelliteNumber::read(char* npText, uint32_t* npNumber) const {
  const char* lpNext = npText;
  for (; (static_cast<unsigned char>(*lpNext) & 0x80U) == 0; ++lpNext) {
    if (*lpNext == '\0') return true;
    if (*lpNext < '0' || *lpNext > '9') return false;
    *npNumber = *npNumber * 10 + static_cast<unsigned char>(*lpNext - '0');
    if (*npNumber >> (8 * mSize) != 0) return false;
  }
  if (!mReadsFullWidth) return false;
  const unsigned int lSize = static_cast<unsigned int>(strlen(npText)) + 1;
  return utl::convertAttrib(npText, lSize, utl::HANKAKU_ZENKAKU_PAIR) && utl::toUint32(npText, npNumber) &&
         *npNumber >> (8 * mSize) == 0;
}

int SatelliteNumber::fromUint32(unsigned int nNumber, unsigned char* npOut, unsigned int nOutSize) const {
  static const char OPERATION[] = "convertFromSatelliteNumUint32";
  if (npOut == nullptr) return fail(OPERATION, "Argument Error");
  if (nOutSize < mSize) return fail(OPERATION, "BufferSize Error");
  putUint(npOut, mSize, nNumber);
  return static_cast<int>(mSize);
}

int SatelliteNumber::toString(const unsigned char* npRecord, unsigned int nLength, unsigned char* npOut,
                              unsigned int nOutSize, unsigned int* npConsumed) const {
  static const char OPERATION[] = "convertToSatelliteNumString";
  if (npRecord == nullptr || nLength == 0 || npOut == nullptr || npConsumed == nullptr) {
    return fail(OPERATION, "Argument Error");
  }
  if (nLength < mSize) return fail(OPERATION, "nDataSize Error");
  const uint32_t lNumber = getUint(npRecord, mSize);
  const unsigned int lLength = Digits::count(lNumber);
  if (lLength > nOutSize) return fail(OPERATION, "BufferSize Error");
  Digits::put(npOut, lNumber, lLength);
  *npConsumed = mSize;
  return static_cast<int>(lLength);
}

unsigned int SatelliteNumber::plainSize(NmeaBinaryLogDataVersion0& nVersion) {
  const std::type_info& lType = typeid(nVersion);
  const bool lIsOurs = &lType == &typeid(NmeaBinaryLogDataVersion1) || &lType == &typeid(NmeaBinaryLogDataVersion0);
  return lIsOurs ? nVersion.getSatelliteNumSize() : 0;
}

int SatelliteNumber::fail(const char* npOperation, const char* npWords) const {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::%s::%s(): %s", mpClass, npOperation, npWords);
  return -1;
}

}  // namespace nfw
