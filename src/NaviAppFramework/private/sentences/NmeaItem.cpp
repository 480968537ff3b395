#include "NmeaItem.h"

#include "NfwAppLog.h"

namespace nfw {

namespace {

bool isSeparator(char nChar) { return nChar == ',' || nChar == '*' || nChar == '\0'; }

const char* failed(const char* npText) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "%s", npText);
  return nullptr;
}

/// Takes the blanks at both ends of a text of `nSize` characters away. Where the rest begins.
const char* trimSpaceStr(char* npText, unsigned int nSize) {
  if (nSize >= NmeaItem::ITEM_SIZE) return failed("nfw::NmeaDataParser::trimSpaceStr(): Invalid Index");
  while (nSize > 0 && npText[nSize - 1] == ' ') --nSize;
  npText[nSize] = '\0';
  while (*npText == ' ') ++npText;
  return npText;
}

}  // namespace

const char* NmeaItem::extractHeadData(const char* npText) {
  if (npText == nullptr) return failed("NmeaDataParser::extractHeadData(): Argument Error");
  if (*npText == '\0') return failed("NmeaDataParser::extractHeadData(): Sentense None");
  unsigned int lSize = 0;
  for (; !isSeparator(npText[lSize]); ++lSize) {
    if (lSize == ITEM_SIZE - 1) return failed("NmeaDataParser::extractHeadData(): Invalid Sentense");
    mItem[lSize] = npText[lSize];
  }
  mpText = trimSpaceStr(mItem, lSize);
  return npText[lSize] == ',' ? npText + lSize + 1 : "";
}

}  // namespace nfw
