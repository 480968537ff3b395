#include "SentenceTime.h"

#include "RecordText.h"

namespace tool {

namespace {

int timeFieldIndex(std::string_view nSentence) {
  switch (sentenceTypeCode(nSentence)) {
    case typeCode("GGA"):
    case typeCode("RMC"):
    case typeCode("ZDA"):
    case typeCode("GNS"):
    case typeCode("GST"):
      return 1;
    case typeCode("GLL"):
      return 5;
    default:
      return nSentence.substr(0, 9) == "$PUBX,00," ? 2 : -1;
  }
}

bool isDigit(char nByte) { return nByte >= '0' && nByte <= '9'; }

// Two digits at a position, -1 when they are none.
int pair(std::string_view nText, size_t nAt) {
  if (!isDigit(nText[nAt]) || !isDigit(nText[nAt + 1])) return -1;
  return (nText[nAt] - '0') * 10 + nText[nAt + 1] - '0';
}

// ".5", ".50" and ".500" are all 500.
int milliseconds(std::string_view nFraction) {
  int lValue = 0;
  int lWeight = 100;
  for (size_t i = 1; i < nFraction.size() && isDigit(nFraction[i]); ++i, lWeight /= 10) {
    lValue += (nFraction[i] - '0') * lWeight;
  }
  return lValue;
}

// Of digits only, -1 for anything else.
int64_t number(std::string_view nText) {
  if (nText.empty() || nText.size() > 4) return -1;
  int64_t lValue = 0;
  for (const char lByte : nText) {
    if (!isDigit(lByte)) return -1;
    lValue = lValue * 10 + lByte - '0';
  }
  return lValue;
}

int64_t dayOf(int64_t nYear, int64_t nMonth, int64_t nDay) {
  const bool lIsDate = nYear >= 1970 && nMonth >= 1 && nMonth <= 12 && nDay >= 1 && nDay <= 31;
  return lIsDate ? daysSince1970(nYear, nMonth, nDay) : -1;
}

}  // namespace

std::string_view sentenceField(std::string_view nSentence, int nIndex) {
  nSentence = nSentence.substr(0, nSentence.find('*'));
  for (; nIndex > 0; --nIndex) {
    const size_t lComma = nSentence.find(',');
    if (lComma == std::string_view::npos) return {};
    nSentence.remove_prefix(lComma + 1);
  }
  return nSentence.substr(0, nSentence.find(','));
}

int64_t sentenceDay(std::string_view nSentence) {
  const uint32_t lType = sentenceTypeCode(nSentence);
  if (lType == typeCode("ZDA"))
    return dayOfDate(sentenceField(nSentence, 4), sentenceField(nSentence, 3), sentenceField(nSentence, 2));
  return lType == typeCode("RMC") ? dayOfDate(sentenceField(nSentence, 9)) : -1;
}

int64_t dayOfDate(std::string_view nField) {
  if (nField.size() != 6 || number(nField.substr(4)) < 0) return -1;
  return dayOf(2000 + number(nField.substr(4)), number(nField.substr(2, 2)), number(nField.substr(0, 2)));
}

int64_t dayOfDate(std::string_view nYear, std::string_view nMonth, std::string_view nDay) {
  return dayOf(number(nYear), number(nMonth), number(nDay));
}

int64_t sentenceTime(std::string_view nSentence) {
  const int lIndex = timeFieldIndex(nSentence);
  return lIndex < 0 ? -1 : timeOfDay(sentenceField(nSentence, lIndex));
}

int64_t timeOfDay(std::string_view nField) {
  if (nField.size() < 6) return -1;
  const int lHour = pair(nField, 0);
  const int lMinute = pair(nField, 2);
  const int lSecond = pair(nField, 4);
  if (lHour < 0 || lMinute < 0 || lSecond < 0 || lHour > 23 || lMinute > 59 || lSecond > 60) return -1;
  return ((lHour * 60 + lMinute) * 60 + lSecond) * int64_t{1000} + milliseconds(nField.substr(6));
}

}  // namespace tool
