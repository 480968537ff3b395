#include "BinaryNumber.h"

#include <cmath>

#include "Decimal.h"
#include "Digits.h"
#include "NfwAppLog.h"

namespace nfw {
bool convertFloatToSint32(double nData, unsigned int nScale, int32_t* npValue) {
  const double lScaled = nData * static_cast<double>(Digits::POWERS_OF_TEN[nScale]);
  const double lData = std::trunc(lScaled >= 0.0 ? lScaled + 0.5 : lScaled - 0.5);
  if (!(lData >= -2147483648.0 && lData <= 2147483647.0)) {  // neither is what is not a number
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertFloatToSint32(): Overflow lData: %f",
           lData);
    return false;
  }
  *npValue = static_cast<int32_t>(lData);
  return true;
}

bool convertFloatStrToSint32(const char* npText, unsigned int nScale, bool nIsNegated, int32_t* npValue) {
  const char* lpUnknownStr = npText;
  const double lData = Decimal::read(npText, &lpUnknownStr);
  if (*lpUnknownStr != '\0') {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
           "nfw::NmeaBinaryLogDataVersion0::convertFloatStrToSint32(): lpUnknownStr is [%s]", lpUnknownStr);
    return false;
  }
  int32_t lWritten = 0;  // the number has to fit as it is written and with the sign that it is given
  return convertFloatToSint32(lData, nScale, &lWritten) &&
         convertFloatToSint32(nIsNegated ? -lData : lData, nScale, npValue);
}

int convertIntToFloatStr(int64_t nValue, unsigned int nDecimals, unsigned int nLeast, char* nBuffer,
                         unsigned int nBufferSize) {
  if (nBuffer == nullptr) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertIntToFloatStr(): nBuffer is null");
    return -1;
  }
  const uint32_t lMagnitude = static_cast<uint32_t>(nValue < 0 ? -nValue : nValue);
  const unsigned int lWholeNum = Digits::count(lMagnitude / Digits::POWERS_OF_TEN[nDecimals]);
  const unsigned int lLength = (nValue < 0 ? 1 : 0) + lWholeNum + 1 + nDecimals;
  const unsigned int lZeroNum = nLeast > lLength ? nLeast - lLength : 0;
  if (lZeroNum + lLength > nBufferSize) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::convertIntToFloatStr(): fromSint32() error");
    return -1;
  }
  char* lpNext = Digits::put(nBuffer, 0, lZeroNum);
  if (nValue < 0) *lpNext++ = '-';
  Digits::putScaled(lpNext, lMagnitude, nDecimals, 0);
  return static_cast<int>(lZeroNum + lLength);
}

}  // namespace nfw
