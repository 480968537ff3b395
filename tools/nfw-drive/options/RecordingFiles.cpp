#include "RecordingFiles.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "DirectoryEntries.h"
#include "FirstRecord.h"
#include "Options.h"
#include "RotatedName.h"

namespace drive {

namespace {

using Recordings = std::map<std::string, std::vector<std::string>>;  // paths, by prefix

// With a reason where one of their files cannot be read.
Recordings recordingsIn(const std::string& nDirectory, tool::RecordKind nKind, std::string* npReason) {
  Recordings lRotated, lOthers;
  const std::error_code lError = tool::forEachFile(nDirectory, [&](const std::filesystem::path& nPath) {
    const std::string lName = nPath.filename().string();
    const std::optional<std::string> lPrefix = tool::rotatedPrefix(lName);
    const tool::FirstRecord lFirst = tool::firstRecordOf(nPath);
    if (lPrefix && lFirst.mError != 0) *npReason = nPath.string() + ": " + std::strerror(lFirst.mError);
    if (lFirst.mKind != nKind) return;
    (lPrefix ? lRotated : lOthers)[lPrefix ? *lPrefix : lName].push_back(nPath);
  });
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
