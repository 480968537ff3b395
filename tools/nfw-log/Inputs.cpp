#include "Inputs.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "RecordStream.h"

namespace logtool {

namespace {

const size_t SUFFIX_SIZE = 23;  // "_YYYYMMDD-hhmmss_NN.log"

bool isRotated(const std::string& nName) {
  static const char PATTERN[] = "_dddddddd-dddddd_dd.log";
  if (nName.size() < SUFFIX_SIZE) return false;
  const std::string lSuffix = nName.substr(nName.size() - SUFFIX_SIZE);
  for (size_t i = 0; i < SUFFIX_SIZE; ++i) {
    const bool lIsDigit = lSuffix[i] >= '0' && lSuffix[i] <= '9';
    if (PATTERN[i] == 'd' ? !lIsDigit : lSuffix[i] != PATTERN[i]) return false;
  }
  return true;
}

bool isRecording(const std::string& nPath) {
  const int lFd = ::open(nPath.c_str(), O_RDONLY | O_CLOEXEC);
  if (lFd < 0) return false;
  tool::RecordStream lStream(lFd);
  tool::Record lRecord;
  const bool lIs = lStream.next(&lRecord);
  ::close(lFd);
  return lIs;
}

void findInDirectory(const std::string& nDirectory, std::vector<Recording>* npRecordings) {
  std::map<std::string, std::vector<std::string>> lRotated;
  std::vector<std::string> lOthers;
  std::error_code lError;
  for (const auto& lEntry : std::filesystem::directory_iterator(nDirectory, lError)) {
    if (!lEntry.is_regular_file(lError)) continue;
    const std::string lName = lEntry.path().filename().string();
    if (!isRotated(lName)) {
      lOthers.push_back(lEntry.path().string());
      continue;
    }
    const std::string lPrefix = lName.substr(0, lName.size() - SUFFIX_SIZE);
    lRotated[(std::filesystem::path(nDirectory) / lPrefix).string()].push_back(lEntry.path().string());
  }
  for (auto& [lName, lPaths] : lRotated) {
    std::sort(lPaths.begin(), lPaths.end());
    npRecordings->push_back({lName, lPaths});
  }
  std::sort(lOthers.begin(), lOthers.end());
  for (const std::string& lPath : lOthers) {
    if (isRecording(lPath)) npRecordings->push_back({lPath, {lPath}});
  }
}

bool findWord(const std::string& nWord, std::vector<Recording>* npRecordings, std::string* npReason) {
  struct stat lStat = {};
  if (nWord != "-" && ::stat(nWord.c_str(), &lStat) != 0) {
    *npReason = nWord + ": " + std::strerror(errno);
    return false;
  }
  if (!S_ISDIR(lStat.st_mode)) {
    npRecordings->push_back({nWord, {nWord}});
    return true;
  }
  const size_t lBefore = npRecordings->size();
  findInDirectory(nWord, npRecordings);
  if (npRecordings->size() > lBefore) return true;
  *npReason = nWord + ": no recording in this directory";
  return false;
}

}  // namespace

bool findRecordings(const std::vector<std::string>& nWords, std::vector<Recording>* npRecordings,
                    std::string* npReason) {
  return std::all_of(nWords.begin(), nWords.end(),
                     [&](const std::string& nWord) { return findWord(nWord, npRecordings, npReason); });
}

uint64_t totalSize(const std::vector<Recording>& nRecordings) {
  uint64_t lTotal = 0;
  for (const Recording& lRecording : nRecordings) {
    for (const std::string& lPath : lRecording.mPaths) {
      struct stat lStat = {};
      const int lResult = lPath == "-" ? ::fstat(STDIN_FILENO, &lStat) : ::stat(lPath.c_str(), &lStat);
      if (lResult != 0 || !S_ISREG(lStat.st_mode)) return 0;
      lTotal += static_cast<uint64_t>(lStat.st_size);
    }
  }
  return lTotal;
}

}  // namespace logtool
