// What bench/log-tool measures nfw-log against: makes a recording, walks through one with nothing checked, and runs a
// command with its time and memory told.
//   log_tool_floor make FILE BYTES       a log of a simulated drive
//   log_tool_floor walk FILE             steps from record to record
//   log_tool_floor sentences FILE        ... and writes the data of those that are sentences to standard output
//   log_tool_floor run COMMAND...        prints "wall-seconds processor-seconds peak-KiB"
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Output.h"
#include "Simulator.h"

namespace {

const size_t BASE_SIZE = 48;
const size_t BUFFER_SIZE = 256 * 1024;
const uint32_t EPOCH_MS = 1000;

void appendNumber(uint32_t nValue, std::string* npText) {
  for (int i = 0; i < 4; ++i) npText->push_back(static_cast<char>(nValue >> (8 * i) & 0xFF));
}

std::string record(int nId, uint32_t nTick, const std::string& nData) {
  const uint32_t lSeconds = nTick / 1000;
  char lText[BASE_SIZE];
  const int lSize =
      snprintf(lText, sizeof(lText), "2026/01/%02u %02u:%02u:%02u.%03u ID%08X: ", lSeconds / 86400 % 28 + 1,
               lSeconds / 3600 % 24, lSeconds / 60 % 60, lSeconds % 60, nTick % 1000, static_cast<unsigned int>(nId));
  std::string lRecord(lText, static_cast<size_t>(lSize));
  for (const uint32_t lValue : {static_cast<uint32_t>(nId), nTick, static_cast<uint32_t>(nData.size())}) {
    appendNumber(lValue, &lRecord);
  }
  return lRecord + nData + '\n';
}

int make(const char* npPath, uint64_t nBytes) {
  const int lFd = ::open(npPath, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (lFd < 0) return 1;
  tool::Output lOutput(lFd);
  drive::Simulator lSimulator({});
  std::string lEpoch;
  uint32_t lTick = 0;
  for (uint64_t lDone = 0; lDone < nBytes; lTick += EPOCH_MS) {
    lSimulator.writeEpoch(&lEpoch);
    for (size_t lAt = 0, lEnd = 0; lAt < lEpoch.size(); lAt = lEnd) {
      lEnd = lEpoch.find('\n', lAt) + 1;
      const std::string lRecord = record(20, lTick, lEpoch.substr(lAt, lEnd - lAt));
      lOutput.write(lRecord);
      lDone += lRecord.size();
    }
    if (lTick % 60000 == 0) lOutput.write(record(255, lTick, "<DRIVE>   [I] a minute has passed"));
  }
  lOutput.flush();
  return ::close(lFd) == 0 && lOutput.getState() == tool::Output::OPEN ? 0 : 1;
}

int walk(const char* npPath, bool nWrites) {
  const int lFd = ::open(npPath, O_RDONLY | O_CLOEXEC);
  std::vector<char> lBuffer(BUFFER_SIZE);
  tool::Output lOutput(STDOUT_FILENO);
  size_t lBegin = 0, lEnd = 0;
  uint64_t lRecords = 0;
  while (lFd >= 0) {
    uint32_t lSize = 0;
    if (lEnd - lBegin >= BASE_SIZE) memcpy(&lSize, &lBuffer[lBegin + BASE_SIZE - 4], 4);
    const size_t lWhole = BASE_SIZE + lSize + 1;
    if (lEnd - lBegin >= lWhole) {
      const char* const lpData = &lBuffer[lBegin + BASE_SIZE];
      if (nWrites && lSize > 0 && *lpData == '$') lOutput.write({lpData, lSize});
      lBegin += lWhole;
      ++lRecords;
      continue;
    }
    memmove(lBuffer.data(), &lBuffer[lBegin], lEnd - lBegin);
    lEnd -= lBegin;
    lBegin = 0;
    const ssize_t lRead = ::read(lFd, &lBuffer[lEnd], BUFFER_SIZE - lEnd);
    if (lRead <= 0) break;
    lEnd += static_cast<size_t>(lRead);
  }
  lOutput.flush();
  fprintf(stderr, "%llu records\n", static_cast<unsigned long long>(lRecords));
  return lRecords > 0 ? 0 : 1;
}

// The command's own output goes nowhere.
int run(char** npArgv) {
  const auto lStart = std::chrono::steady_clock::now();
  const pid_t lPid = ::fork();
  if (lPid == 0) {
    const int lNowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(lNowhere, STDOUT_FILENO);
    ::dup2(lNowhere, STDERR_FILENO);
    ::execvp(npArgv[0], npArgv);
    ::_exit(127);
  }
  int lStatus = 0;
  rusage lUsage = {};
  if (::wait4(lPid, &lStatus, 0, &lUsage) != lPid || lStatus != 0) return 1;
  const std::chrono::duration<double> lWall = std::chrono::steady_clock::now() - lStart;
  const auto lSeconds = [](const timeval& nTime) {
    return static_cast<double>(nTime.tv_sec) + static_cast<double>(nTime.tv_usec) * 1e-6;
  };
  printf("%.3f %.3f %ld\n", lWall.count(), lSeconds(lUsage.ru_utime) + lSeconds(lUsage.ru_stime), lUsage.ru_maxrss);
  return 0;
}

}  // namespace

int main(int nArgc, char** npArgv) {
  const std::string lCommand = nArgc > 2 ? npArgv[1] : "";
  if (lCommand == "make" && nArgc == 4) return make(npArgv[2], std::strtoull(npArgv[3], nullptr, 10));
  if (lCommand == "walk") return walk(npArgv[2], false);
  if (lCommand == "sentences") return walk(npArgv[2], true);
  if (lCommand == "run") return run(npArgv + 2);
  fprintf(stderr, "log_tool_floor: expected make FILE BYTES, walk FILE, sentences FILE or run COMMAND...\n");
  return 2;
}
