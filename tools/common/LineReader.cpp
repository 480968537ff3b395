#include "LineReader.h"

#include "NfwNmeaCheckSumCalclator.h"

namespace tool {

namespace {

bool isStart(char nByte) { return nByte == '$' || nByte == '!'; }
bool isLineEnd(char nByte) { return nByte == '\r' || nByte == '\n'; }
bool isBlank(char nByte) { return nByte == ' ' || nByte == '\t'; }
bool isPrintable(char nByte) { return nByte >= 0x20 && nByte <= 0x7E; }

int hexDigit(char nDigit) {
  if (nDigit >= '0' && nDigit <= '9') return nDigit - '0';
  if (nDigit >= 'A' && nDigit <= 'F') return nDigit - 'A' + 10;
  if (nDigit >= 'a' && nDigit <= 'f') return nDigit - 'a' + 10;
  return -1;
}

// An address begins with a capital; what is left of a sentence behind a byte that was spoilt into a "$" does not.
bool hasAddress(std::string_view nSentence) {
  return nSentence.size() > 1 && nSentence[1] >= 'A' && nSentence[1] <= 'Z';
}

// The sentence ends in exactly "*hh", and hh is its checksum.
bool isChecksumRight(std::string_view nSentence, size_t nStar) {
  if (nStar + 3 != nSentence.size()) return false;
  const int lHigh = hexDigit(nSentence[nStar + 1]);
  const int lLow = hexDigit(nSentence[nStar + 2]);
  if (lHigh < 0 || lLow < 0) return false;
  const unsigned int lSum = nfw::NmeaCheckSumCalclator::calculateNmeaSentenceCheckSum(
      reinterpret_cast<const unsigned char*>(nSentence.data()), static_cast<unsigned int>(nSentence.size()));
  return lSum == static_cast<unsigned int>(lHigh * 16 + lLow);
}

}  // namespace

const char* lineVerdictName(LineVerdict nVerdict) {
  static const char* const NAMES[LINE_VERDICT_NUM] = {"checked",  "unchecked", "noise",        "cut",
                                                      "too long", "binary",    "bad checksum", "no checksum"};
  return NAMES[nVerdict];
}

bool LineReader::feed(const char* npData, size_t nSize, SentenceSink& nSink) {
  for (size_t i = 0; i < nSize; ++i) {
    if (!take(npData[i], nSink)) return false;
  }
  return true;
}

bool LineReader::finish(SentenceSink& nSink) { return endPiece(false, nSink); }

bool LineReader::take(char nByte, SentenceSink& nSink) {
  if (isLineEnd(nByte)) return endPiece(true, nSink);
  if (!isStart(nByte)) {
    takeInside(nByte);
    return true;
  }
  const bool lGoesOn = endPiece(false, nSink);
  mBuffer[0] = nByte;
  mSize = 1;
  mState = SENTENCE;
  return lGoesOn;
}

void LineReader::takeInside(char nByte) {
  if (mState == BETWEEN && !isBlank(nByte)) {
    mCounts.add(LINE_NOISE);
    mState = NOISE;
  }
  if (mState != SENTENCE) return;
  if (!isPrintable(nByte) && !isBlank(nByte)) return spoil(LINE_BINARY);
  if (mSize == MAX_SENTENCE) return spoil(LINE_TOO_LONG);
  mBuffer[mSize++] = nByte;
}

void LineReader::spoil(LineVerdict nVerdict) {
  mCounts.add(nVerdict);
  mState = SPOILT;
}

bool LineReader::endPiece(bool nWhole, SentenceSink& nSink) {
  const State lState = mState;
  mState = BETWEEN;
  if (lState != SENTENCE) return true;
  while (isBlank(mBuffer[mSize - 1])) --mSize;
  const std::string_view lSentence(mBuffer, mSize);
  return deliver(lSentence, judge(lSentence, nWhole), nSink);
}

LineVerdict LineReader::judge(std::string_view nSentence, bool nWhole) const {
  if (!hasAddress(nSentence)) return LINE_NOISE;
  const size_t lStar = nSentence.find('*');
  if (lStar != std::string_view::npos && isChecksumRight(nSentence, lStar)) return LINE_CHECKED;
  if (!nWhole || nSentence.size() < MIN_SENTENCE) return LINE_CUT;
  if (!mJudged) return LINE_UNCHECKED;
  if (lStar != std::string_view::npos) return LINE_BAD_CHECKSUM;
  return mSeenChecksum ? LINE_NO_CHECKSUM : LINE_UNCHECKED;
}

bool LineReader::deliver(std::string_view nSentence, LineVerdict nVerdict, SentenceSink& nSink) {
  const bool lAccepted = nVerdict == LINE_CHECKED || nVerdict == LINE_UNCHECKED;
  if (nVerdict == LINE_CHECKED) mSeenChecksum = true;
  if (lAccepted && !nSink.onSentence(nSentence)) return false;
  mCounts.add(nVerdict);
  return true;
}

}  // namespace tool
