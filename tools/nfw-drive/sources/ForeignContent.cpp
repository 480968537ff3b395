#include "ForeignContent.h"

#include "RecordFormat.h"

namespace drive {

namespace {

using namespace std::string_view_literals;

const std::string_view COMPRESSED[] = {"\x1F\x8B"sv, "BZh"sv, "\xFD\x37zXZ\0"sv, "\x28\xB5\x2F\xFD"sv};
const size_t LOG_HEADER = 48;  // before the data of a log record

bool isCompressed(std::string_view nFirst) {
  for (const std::string_view lMark : COMPRESSED) {
    if (nFirst.substr(0, lMark.size()) == lMark) return true;
  }
  return false;
}

// A record may be longer than what is in sight.
bool isLog(const tool::RecordView& nFirst) {
  return nFirst.mBytes.size() >= LOG_HEADER &&
         tool::logRecordFormat().judge(nFirst).mResult != tool::RecordVerdict::WRONG;
}

// It begins with an id and a version, none of them printable, and no record is empty.
bool isSensorLog(const tool::RecordView& nFirst) {
  const tool::RecordFormat& lFormat = tool::sensorRecordFormat();
  tool::Record lRecord;
  if (nFirst.mBytes.empty() || static_cast<unsigned char>(nFirst.mBytes.front()) >= ' ') return false;
  const tool::RecordVerdict lVerdict = lFormat.judge(nFirst);
  if (lVerdict.mResult != tool::RecordVerdict::WHOLE) return false;
  lFormat.decode(nFirst.mBytes.substr(0, lVerdict.mSize), &lRecord);
  return !lRecord.mData.empty();
}

}  // namespace

const char* foreignContent(std::string_view nFirst) {
  const tool::RecordView lView = {nFirst, false, true};
  if (isCompressed(nFirst)) return "is compressed: unpack it, or give its text to nfw-drive -";
  if (isLog(lView)) return "is a recording: use --replay";
  return isSensorLog(lView) ? "is a recording of the sensor log: use --sys-replay" : nullptr;
}

}  // namespace drive
