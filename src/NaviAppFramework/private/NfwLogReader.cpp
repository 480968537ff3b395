#include "NfwLogReader.h"

#include "LittleEndian.h"
#include "LogRecord.h"
#include "NfwAppLog.h"
#include "TextShape.h"

namespace nfw {
namespace {

void decode(const unsigned char* npFields, RecordHeader* npHeader) {
  npHeader->mId = static_cast<int>(getUint32(npFields));
  npHeader->mTime = getUint32(npFields + 4);
  npHeader->mSize = getUint32(npFields + 8);
}

void log(const char* npOperation, const char* npText, int nId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogReader::%s(): %s Id=0x%08X", npOperation, npText,
         static_cast<unsigned int>(nId));
}

void logAt(const char* npText, int nId, uint64_t nPosition) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogReader::next(): %s Id=0x%08X LogPos=%lu", npText,
         static_cast<unsigned int>(nId), static_cast<unsigned long>(nPosition));
}

bool isPlausible(const unsigned char* npBytes) {
  static const char SHAPE[] = "0000/00/00 00:00:00.000 IDXXXXXXXX: ";
  static_assert(sizeof SHAPE == LogRecord::PREFIX_SIZE + 1);
  return hasShape(npBytes, SHAPE);
}

static_assert(LogRecord::BASE_SIZE == RecordFormat::MAX_HEADER_SIZE);

// The text before the fields is never read: it has one length.
const RecordFormat FORMAT = {"nfw::LogReader",
                             LogRecord::PREFIX_SIZE,
                             {{4, "log type Id"}, {4, "time"}, {4, "data size"}},
                             12,
                             LogRecord::POSTFIX_SIZE,
                             LogRecord::TIME_AT,
                             true,
                             decode,
                             log,
                             logAt,
                             nullptr,
                             isPlausible,
                             2};

}  // namespace

LogReader::LogReader() : RecordReader(FORMAT, Here::now()) {}

const RecordFormat& LogReader::recordFormat() { return FORMAT; }

int LogReader::next(unsigned int* npTime, void* npBuffer, unsigned int nBufferSize, unsigned long long* npPosition) {
  RecordHeader lHeader;
  const int lResult = nextRecord(&lHeader, npBuffer, nBufferSize);
  if (lResult < 0) return lResult;
  if (npTime != nullptr) *npTime = lHeader.mTime;
  if (npPosition != nullptr) *npPosition = lHeader.mPosition;
  return lResult;
}

}  // namespace nfw
