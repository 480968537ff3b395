#include "RecordingFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "Options.h"
#include "RecordStream.h"
#include "RotatedName.h"

namespace drive {

namespace {

using Recordings = std::map<std::string, std::vector<std::string>>;  // paths, by prefix

tool::RecordKind kindOf(const std::string& nPath, std::string* npReason) {
  const int lFile = ::open(nPath.c_str(), O_RDONLY | O_CLOEXEC);
  if (lFile < 0) {
    *npReason = nPath + ": " + std::strerror(errno);
    return tool::UNKNOWN_RECORD;
  }
  tool::RecordStream lStream(lFile);
  tool::Record lRecord;
  const tool::RecordKind lKind = lStream.next(&lRecord) ? lRecord.mKind : tool::UNKNOWN_RECORD;
  ::close(lFile);
  if (lStream.getError() != 0) *npReason = nPath + ": " + std::strerror(lStream.getError());
  return lKind;
}

// With a reason where one of their files cannot be read.
Recordings recordingsIn(const std::string& nDirectory, tool::RecordKind nKind, std::string* npReason) {
  Recordings lRotated, lOthers;
  std::error_code lError;
  std::filesystem::directory_iterator lEntry(nDirectory, lError);
  for (; !lError && lEntry != std::filesystem::directory_iterator(); lEntry.increment(lError)) {
    std::error_code lUnknown;
    if (!lEntry->is_regular_file(lUnknown)) continue;
    const std::string lName = lEntry->path().filename().string();
    const std::optional<std::string> lPrefix = tool::rotatedPrefix(lName);
    std::string lReason;
    const bool lIsOther = kindOf(lEntry->path(), &lReason) != nKind;
    if (lPrefix && !lReason.empty()) *npReason = lReason;
    if (lIsOther) continue;
    (lPrefix ? lRotated : lOthers)[lPrefix ? *lPrefix : lName].push_back(lEntry->path());
  }
  if (lError) *npReason = nDirectory + ": " + lError.message();
  return lRotated.empty() && nKind == tool::SENSOR_RECORD ? lOthers : lRotated;
}

bool findInDirectory(const std::string& nDirectory, tool::RecordKind nKind, const std::string& nPrefix,
                     std::vector<std::string>* npFiles, std::string* npReason) {
  Recordings lRecordings = recordingsIn(nDirectory, nKind, npReason);
  if (!npReason->empty()) return false;
  if (lRecordings.empty()) {
    *npReason = nDirectory + ": no recording of the " + (nKind == tool::LOG_RECORD ? "data logger" : "sensor log") +
                " in this directory";
    return false;
  }
  auto lFound = nPrefix.empty() && lRecordings.size() == 1 ? lRecordings.begin() : lRecordings.find(nPrefix);
  if (lFound == lRecordings.end()) lFound = lRecordings.find(nPrefix + RecordOptions::SENSOR_SUFFIX);
  if (lFound == lRecordings.end()) {
    *npReason = nDirectory + ": holds the recording" + (lRecordings.size() > 1 ? "s" : "");
    for (const auto& lRecording : lRecordings) *npReason += " " + lRecording.first;
    *npReason += ": name one of them with --prefix";
    return false;
  }
  std::sort(lFound->second.begin(), lFound->second.end());
  npFiles->insert(npFiles->end(), lFound->second.begin(), lFound->second.end());
  return true;
}

}  // namespace

bool findRecordingFiles(const std::vector<std::string>& nWords, tool::RecordKind nKind, const std::string& nPrefix,
                        std::vector<std::string>* npFiles, std::string* npReason) {
  return std::all_of(nWords.begin(), nWords.end(), [&](const std::string& nWord) {
    struct stat lStat = {};
    if (::stat(nWord.c_str(), &lStat) != 0) {
      *npReason = nWord + ": " + std::strerror(errno);
      return false;
    }
    if (S_ISDIR(lStat.st_mode)) return findInDirectory(nWord, nKind, nPrefix, npFiles, npReason);
    npFiles->push_back(nWord);
    if (!S_ISREG(lStat.st_mode))
      *npReason = nWord + ": neither a file nor a directory: a replay reads it more than once";
    return S_ISREG(lStat.st_mode);
  });
}

}  // namespace drive
