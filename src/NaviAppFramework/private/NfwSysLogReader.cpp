#include "NfwSysLogReader.h"

#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "SensorRecord.h"

namespace nfw {
namespace {

void decode(const unsigned char* npFields, RecordHeader* npHeader) {
  npHeader->mId = npFields[0] & 0xF;
  npHeader->mVersion = npFields[0] >> 4;
  npHeader->mTime = getUint32(npFields + SensorRecord::TIME_AT);
  npHeader->mSize = getUint16(npFields + SensorRecord::SIZE_AT);
}

void log(const char* npOperation, const char* npText, int nId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SysLogReader::%s(): %s Id=0x%02x", npOperation, npText,
         static_cast<unsigned int>(nId));
}

void logAt(const char* npText, int nId, uint64_t nPosition) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "SysLogReader::next(): %s Id=0x%02x LogPos=%llu", npText,
         static_cast<unsigned int>(nId), static_cast<unsigned long long>(nPosition));
}

bool isPlausible(const unsigned char* npBytes) {
  return getUint16(npBytes + SensorRecord::SIZE_AT) <= SensorRecord::MAX_DATA_SIZE;
}

void logStart(int nId) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_DETAIL, "### Start Sensor sysLog : Id=0x%02x", static_cast<unsigned int>(nId));
}

const RecordFormat FORMAT = {"nfw::SysLogReader",
                             0,
                             {{1, "log Info"}, {4, "time"}, {2, "data size"}},
                             SensorRecord::HEADER_SIZE,
                             0,
                             SensorRecord::TIME_AT,
                             false,
                             decode,
                             log,
                             logAt,
                             logStart,
                             isPlausible,
                             8};

}  // namespace

SysLogReader::SysLogReader() : RecordReader(FORMAT, Here::now()) {}

const RecordFormat& SysLogReader::recordFormat() { return FORMAT; }

int SysLogReader::next(int* npLogVersion, unsigned int* npTime, void* npBuffer, unsigned int nBufferSize,
                       unsigned long long* npPosition) {
  RecordHeader lHeader;
  const int lResult = nextRecord(&lHeader, npBuffer, nBufferSize);
  if (lResult < 0) return lResult;
  if (npLogVersion != nullptr) *npLogVersion = lHeader.mVersion;
  if (npTime != nullptr) *npTime = lHeader.mTime;
  if (npPosition != nullptr) *npPosition = lHeader.mPosition;
  return lResult;
}

}  // namespace nfw
