#include "SentenceTime.h"

#include "RecordText.h"

namespace tool {

namespace {

struct TimeField {
  std::string_view mType;
  int mIndex;
};
const TimeField TIME_FIELDS[] = {{"GGA", 1}, {"RMC", 1}, {"ZDA", 1}, {"GNS", 1}, {"GST", 1}, {"GLL", 5}};

int timeFieldIndex(std::string_view nSentence) {
  if (nSentence.substr(0, 9) == "$PUBX,00,") return 2;
  const std::string_view lAddress = sentenceField(nSentence, 0);
  if (lAddress.size() != 6) return -1;
  for (const TimeField& lField : TIME_FIELDS) {
    if (lAddress.substr(3) == lField.mType) return lField.mIndex;
  }
  return -1;
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
  const std::string_view lType = nSentence.substr(0, 7).substr(nSentence.size() < 3 ? 0 : 3);
  if (lType == "ZDA,")
    return dayOf(number(sentenceField(nSentence, 4)), number(sentenceField(nSentence, 3)),
                 number(sentenceField(nSentence, 2)));
  if (lType != "RMC,") return -1;
  const std::string_view lDate = sentenceField(nSentence, 9);  // ddmmyy
  if (lDate.size() != 6 || number(lDate.substr(4)) < 0) return -1;
  return dayOf(2000 + number(lDate.substr(4)), number(lDate.substr(2, 2)), number(lDate.substr(0, 2)));
}

int64_t sentenceTime(std::string_view nSentence) {
  const int lIndex = timeFieldIndex(nSentence);
  if (lIndex < 0) return -1;
  const std::string_view lText = sentenceField(nSentence, lIndex);
  if (lText.size() < 6) return -1;
  const int lHour = pair(lText, 0);
  const int lMinute = pair(lText, 2);
  const int lSecond = pair(lText, 4);
  if (lHour < 0 || lMinute < 0 || lSecond < 0 || lHour > 23 || lMinute > 59 || lSecond > 60) return -1;
  return ((lHour * 60 + lMinute) * 60 + lSecond) * int64_t{1000} + milliseconds(lText.substr(6));
}

}  // namespace tool
