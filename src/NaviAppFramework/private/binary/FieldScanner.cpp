#include "FieldScanner.h"

#include <cstddef>
#include <cstring>

#include "NfwAppLog.h"

namespace nfw {

FieldScanner::FieldScanner(const unsigned char* npSentence, unsigned int nLength) {
  memcpy(mText, npSentence, nLength);
  memset(mText + nLength, 0, 4);
}

// Counts the fields on its way, for the log.
const char* FieldScanner::find(FieldPlace nPlace) {
  unsigned int lCount = 0;
  const char* lpField = nPlace.mpFrom;
  for (unsigned int i = 1; i < nPlace.mTarget && *end(lpField) != '\0'; ++i, ++lCount) lpField = behind(end(lpField));
  if (*end(lpField) != '\0') return lpField;
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR,
         "nfw::NmeaBinaryLogDataVersion0::extractNmeaField(): can't find field: target=%u field count=%u",
         nPlace.mTarget, lCount);
  return nullptr;
}

const char* FieldScanner::extractNmeaField(FieldPlace nPlace, Text& nText) {
  const char* lpFirst = find(nPlace);
  if (lpFirst == nullptr) return nullptr;
  const char* const lpEnd = end(lpFirst);
  if (lpEnd > lpFirst + MAX_FIELD) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "nfw::NmeaBinaryLogDataVersion0::extractNmeaField(): insufficient buffer");
    return nullptr;
  }
  const char* lpLast = lpEnd;
  while (lpFirst != lpLast && *lpFirst == ' ') ++lpFirst;
  while (lpFirst != lpLast && lpLast[-1] == ' ') --lpLast;
  const size_t lLength = static_cast<size_t>(lpLast - lpFirst);
  memcpy(nText, lpFirst, lLength);
  nText[lLength] = '\0';
  return behind(lpEnd);
}

}  // namespace nfw
