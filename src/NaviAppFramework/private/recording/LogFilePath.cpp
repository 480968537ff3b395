#include "LogFilePath.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "NfwAppLog.h"
#include "TextShape.h"
#include "utl/File.h"
#include "utl/StringUtil.h"
#include "utl/Time.h"

namespace nfw {
namespace {

const unsigned int SERIAL_NUM = 100;
const char SUFFIX[] = "_00000000-000000_00.log";
static_assert(sizeof SUFFIX == LOG_FILE_SUFFIX_SIZE + 1);

bool fits(int nLength) { return nLength >= 0 && static_cast<unsigned int>(nLength) < LOG_PATH_SIZE; }

bool fail(const char* npText) {
  APPLOG(LOG_TYPE_NFW, LOG_LEVEL_ERROR, "NfwLogWriter::createFilePath(): %s", npText);
  return false;
}

bool createBasePath(const char* npDirectory, const char* npFilePrefix, char (&nPath)[LOG_PATH_SIZE]) {
  utl::Time lTime;
  if (!utl::getLocalTime(&lTime)) return fail("Can't get local time");
  unsigned int lYear = 0, lMonth = 0, lDay = 0, lHour = 0, lMinute = 0, lSecond = 0, lMillisecond = 0;
  if (!lTime.get(&lYear, &lMonth, &lDay, &lHour, &lMinute, &lSecond, &lMillisecond)) return fail("Can't get time");
  const int lLength = snprintf(nPath, LOG_PATH_SIZE, "%s/%s_%04u%02u%02u-%02u%02u%02u", npDirectory, npFilePrefix,
                               lYear, lMonth, lDay, lHour, lMinute, lSecond);
  return fits(lLength) || fail("Can't create base path");
}

// The kernel lets one caller alone make a file.
bool makeFile(const char* npPath) {
  const int lFile = ::open(npPath, O_WRONLY | O_CREAT | O_EXCL | O_NOCTTY | O_CLOEXEC, mode_t{0666});
  if (lFile >= 0) ::close(lFile);
  return lFile >= 0;
}

}  // namespace

bool createLogFilePath(const char* npDirectory, const char* npFilePrefix, char (&nPath)[LOG_PATH_SIZE],
                       bool* npIsMade) {
  char lBasePath[LOG_PATH_SIZE];
  if (!createBasePath(npDirectory, npFilePrefix, lBasePath)) return false;
  for (unsigned int lSerial = 0; lSerial < SERIAL_NUM; ++lSerial) {
    char lPath[LOG_PATH_SIZE];
    if (!fits(snprintf(lPath, LOG_PATH_SIZE, "%s_%02u.log", lBasePath, lSerial))) return fail("Can't create path");
    if (utl::File::exists(lPath)) continue;
    *npIsMade = makeFile(lPath);
    if (!*npIsMade && errno == EEXIST && utl::File::exists(lPath)) continue;  // another recorder was quicker
    return utl::copyStr(nPath, LOG_PATH_SIZE, lPath) || fail("Can't copy path");
  }
  return fail("Can't create path: Try Limit");
}

bool isLogFileName(const char* npName, const char* npFilePrefix) {
  const size_t lPrefixSize = strlen(npFilePrefix);
  if (strncmp(npName, npFilePrefix, lPrefixSize) != 0) return false;
  const char* const lpSuffix = npName + lPrefixSize;
  return strlen(lpSuffix) == LOG_FILE_SUFFIX_SIZE && hasShape(reinterpret_cast<const unsigned char*>(lpSuffix), SUFFIX);
}

}  // namespace nfw
