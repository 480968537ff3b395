#include "SysLogService.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include "BinaryLog.h"
#include "LogTypes.h"
#include "SeamState.h"
#include "SinkSlot.h"
#include "StandardError.h"
#include "SysLogServiceHost.h"

namespace {

// Built by the compiler and never destroyed: lines are written before main and after it.
syslogservice::LogTypes gTypes;
syslogservice::SinkSlot gSink;
syslogservice::StandardError gStandardError;
syslogservice::BinaryLog gBinaryLog;

template <class... Globals>
constexpr bool areNeverDestroyed = (std::is_trivially_destructible_v<Globals> && ...);
static_assert(areNeverDestroyed<syslogservice::LogTypes, syslogservice::SinkSlot, syslogservice::StandardError,
                                syslogservice::BinaryLog>);

// "<name> " of a registered type, "[<number>] " of another one. A name brings its own blanks.
void describeSource(int nType, char (&nSource)[syslogservice::LogTypes::NAME_SIZE + 1]) {
  char lName[syslogservice::LogTypes::NAME_SIZE] = {};
  int lLevel = 0;
  const bool lHasName = gTypes.get(nType, lName, &lLevel) && lName[0] != '\0';
  if (!lHasName) {
    snprintf(nSource, sizeof(nSource), "[%d] ", nType);
  } else {
    snprintf(nSource, sizeof(nSource), "%s%s", lName, lName[strlen(lName) - 1] == ' ' ? "" : " ");
  }
}

}  // namespace

bool registerLogType(int nType, const char* npName, int nLevel) {
  return !seams::fails(seams::LOG_TYPE) && gTypes.set(nType, npName, nLevel);
}

void setFilterLevel(int nType, int nLevel) { gTypes.setLevel(nType, nLevel); }
void setAllFilterLevel(int nLevel) { gTypes.setAllLevels(nLevel); }

void applog(int nType, int nLevel, const char* npText) {
  if (npText == nullptr || gSink.write(nType, nLevel, npText)) return;
  syslogservice::writeToStandardError(nType, nLevel, npText);
}

int BinaryLogWrite(int nKind, const void* npData, unsigned int nSize) {
  if (nKind != 0 || (npData == nullptr && nSize > 0) || seams::fails(seams::BINARY_LOG)) return -1;
  return gBinaryLog.append(npData, nSize) ? 0 : -1;
}

namespace syslogservice {

Sink* setSink(Sink* npSink) { return gSink.exchange(npSink); }

void writeToStandardError(int nType, int nLevel, const char* npText) {
  const int lErrno = errno;  // the caller may log first and look at it then
  char lSource[LogTypes::NAME_SIZE + 1];
  describeSource(nType, lSource);
  gStandardError.writeLine(nLevel, lSource, npText);
  errno = lErrno;
}

void setColoured(bool nColoured) { gStandardError.setColoured(nColoured); }
void setBinaryLogSyncInterval(unsigned int nIntervalMs) { gBinaryLog.setSyncInterval(nIntervalMs); }

bool setBinaryLogFile(const char* npPath) {
  BinaryLogFiles lOne;
  lOne.mpDirectory = npPath;
  return gBinaryLog.setFiles(lOne);
}

bool setBinaryLogFiles(const BinaryLogFiles& nFiles) {
  const auto lIsGiven = [](const char* np) { return np != nullptr && np[0] != '\0'; };
  errno = EINVAL;
  return lIsGiven(nFiles.mpDirectory) && lIsGiven(nFiles.mpPrefix) && gBinaryLog.setFiles(nFiles);
}

bool flushBinaryLog(unsigned int nTimeoutMs) { return gBinaryLog.flush(nTimeoutMs); }
BinaryLogCounts binaryLogCounts() { return gBinaryLog.counts(); }
unsigned long long droppedLines() { return gStandardError.dropped(); }

int registeredLevel(int nType) {
  char lName[LogTypes::NAME_SIZE];
  int lLevel = -1;
  gTypes.get(nType, lName, &lLevel);
  return lLevel;
}

}  // namespace syslogservice
