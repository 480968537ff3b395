#include "LogRecordBase.h"

#include <cstring>

#include "LittleEndian.h"
#include "NfwAppLog.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const unsigned int MILLISECOND_AT = 20;
const unsigned int ID_TEXT_AT = 26;
const unsigned int MAX_YEAR = 9999;  // the text has four places

void putDigits(unsigned char* npTarget, unsigned int nCount, unsigned int nValue) {
  for (unsigned int i = nCount; i > 0; --i, nValue /= 10)
    npTarget[i - 1] = static_cast<unsigned char>('0' + nValue % 10);
}

void putHex(unsigned char* npTarget, uint32_t nValue) {
  for (unsigned int i = 0; i < 8; ++i) {
    npTarget[i] = static_cast<unsigned char>("0123456789ABCDEF"[nValue >> (28 - 4 * i) & 0xF]);
  }
}

}  // namespace

bool LogRecordBase::Second::operator==(const Second& nOther) const {
  return mSecond == nOther.mSecond && mMinute == nOther.mMinute && mHour == nOther.mHour && mDay == nOther.mDay &&
         mMonth == nOther.mMonth && mYear == nOther.mYear;
}

bool LogRecordBase::build(int nLogTypeId, unsigned int nDataSize) {
  if (!putPrefix(nLogTypeId)) return false;
  const unsigned int lTick = utl::TimeCounter::getTickTime();
  if (lTick == utl::TimeCounter::FAILURE) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Can't get tick time: Id=0x%08X",
           static_cast<unsigned int>(nLogTypeId));
    return false;
  }
  putUint32(mBytes + LogRecord::ID_AT, static_cast<uint32_t>(nLogTypeId));
  putUint32(mBytes + LogRecord::TIME_AT, lTick);
  putUint32(mBytes + LogRecord::SIZE_AT, nDataSize);
  return true;
}

// "%04u/%02u/%02u %02u:%02u:%02u.%03u ID%08X: ", by hand: a formatted print costs more than the rest of a record.
bool LogRecordBase::putPrefix(int nLogTypeId) {
  const unsigned int lId = static_cast<unsigned int>(nLogTypeId);
  utl::Time lTime;
  if (!utl::getLocalTime(&lTime)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Can't get local time: Id=0x%08X", lId);
    return false;
  }
  Second lSecond;
  unsigned int lMillisecond = 0;
  if (!lTime.get(&lSecond.mYear, &lSecond.mMonth, &lSecond.mDay, &lSecond.mHour, &lSecond.mMinute, &lSecond.mSecond,
                 &lMillisecond)) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Can't get time: Id=0x%08X", lId);
    return false;
  }
  if (lSecond.mYear > MAX_YEAR) {
    APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "LogWriter::write(): Can't create prefix: Id=0x%08X", lId);
    return false;
  }
  if (!(lSecond == mSecond)) putSecond(lSecond);
  putDigits(mBytes + MILLISECOND_AT, 3, lMillisecond);
  putHex(mBytes + ID_TEXT_AT, lId);
  return true;
}

void LogRecordBase::putSecond(const Second& nSecond) {
  memcpy(mBytes, "0000/00/00 00:00:00.000 ID00000000: ", LogRecord::PREFIX_SIZE);
  putDigits(mBytes, 4, nSecond.mYear);
  putDigits(mBytes + 5, 2, nSecond.mMonth);
  putDigits(mBytes + 8, 2, nSecond.mDay);
  putDigits(mBytes + 11, 2, nSecond.mHour);
  putDigits(mBytes + 14, 2, nSecond.mMinute);
  putDigits(mBytes + 17, 2, nSecond.mSecond);
  mSecond = nSecond;
}

}  // namespace nfw
