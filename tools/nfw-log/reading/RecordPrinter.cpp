#include "RecordPrinter.h"

#include <iterator>

#include "Format.h"
#include "JsonObject.h"
#include "PrintableText.h"
#include "RecordType.h"
#include "SentenceText.h"

namespace logtool {

const std::string& RecordPrinter::print(const tool::Record& nRecord, Selector& nSelector) {
  mText.clear();
  if (mOptions.mJson) {
    appendJson(nRecord, nSelector);
    return mText;
  }
  begin(nRecord, nSelector);
  if (mOptions.mHex) {
    mText += mHead;
    appendHex(nRecord.mData);
    mText += '\n';
  } else if (decode(nRecord)) {
    for (const std::string& lSentence : mDecoded) appendLine(lSentence);
  } else {
    appendLine(nRecord.mData);
  }
  return mText;
}

void RecordPrinter::begin(const tool::Record& nRecord, Selector& nSelector) {
  const int64_t lTime = nSelector.timeOf(nRecord);
  if (lTime != NO_TIME)
    mHead = timeText(lTime);
  else
    mHead = "+" + durationText(nSelector.getTimeline().getElapsedMs());
  fmt::format_to(std::back_inserter(mHead), " {} ", nRecord.mId);
}

// Text as it is, but for a character that would break the line or the terminal.
void RecordPrinter::appendLine(std::string_view nData) {
  mText += mHead;
  tool::appendPrintable(tool::withoutLineEnd(nData), &mText);
  mText += '\n';
}

void RecordPrinter::appendHex(std::string_view nData) {
  static const char DIGITS[] = "0123456789abcdef";
  for (const char lByte : nData) {
    mText += DIGITS[static_cast<unsigned char>(lByte) >> 4];
    mText += DIGITS[static_cast<unsigned char>(lByte) & 0xF];
  }
}

void RecordPrinter::appendJson(const tool::Record& nRecord, Selector& nSelector) {
  const int64_t lTime = nSelector.timeOf(nRecord);
  {
    tool::JsonObject lObject(&mText);
    if (lTime == NO_TIME) lObject.null("time");
    if (lTime != NO_TIME) lObject.text("time", timeText(lTime));
    lObject.number("elapsed_ms", nSelector.getTimeline().getElapsedMs());
    lObject.number("tick", nRecord.mTick);
    lObject.number("id", static_cast<uint64_t>(nRecord.mId));
    if (nRecord.mKind == tool::SENSOR_RECORD) lObject.number("version", static_cast<uint64_t>(nRecord.mVersion));
    lObject.text("type", recordType(nRecord));
    lObject.number("offset", nRecord.mOffset);
    const std::string_view lData = tool::withoutLineEnd(nRecord.mData);
    bool lIsText = nRecord.mKind == tool::LOG_RECORD && !mOptions.mHex;
    for (const char lByte : lData) lIsText = lIsText && lByte >= 0x20 && lByte <= 0x7E;
    if (lIsText) {
      lObject.text("text", lData);
    } else {
      lObject.key("hex")->push_back('"');
      appendHex(nRecord.mData);
      mText += '"';
    }
    if (decode(nRecord)) {
      tool::JsonObject lList(lObject.key("sentences"), '[');
      for (const std::string& lSentence : mDecoded) tool::JsonObject::quote(lSentence, lList.element());
    }
  }
  mText += '\n';
}

// True when it is a record of a sensor log that holds sentences.
bool RecordPrinter::decode(const tool::Record& nRecord) {
  mDecoded.clear();
  return nRecord.mKind == tool::SENSOR_RECORD && mSentences.read(nRecord, *this) && !mDecoded.empty();
}

bool RecordPrinter::onSentence(std::string_view nSentence) {
  mDecoded.emplace_back(nSentence);
  return true;
}

}  // namespace logtool
