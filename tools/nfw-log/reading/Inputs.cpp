#include "Inputs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>

#include "DirectoryEntries.h"
#include "FileOrder.h"
#include "FirstRecord.h"
#include "RotatedName.h"

namespace logtool {

namespace {

void findInDirectory(const std::string& nDirectory, std::vector<Recording>* npRecordings) {
  std::map<std::string, std::vector<std::string>> lRotated;
  std::vector<std::string> lOthers;
  tool::forEachFile(nDirectory, [&](const std::filesystem::path& nPath) {
    const std::optional<std::string> lPrefix = tool::rotatedPrefix(nPath.filename().string());
    (lPrefix ? lRotated[(nPath.parent_path() / *lPrefix).string()] : lOthers).push_back(nPath.string());
  });
  for (auto& [lName, lPaths] : lRotated) {
    std::sort(lPaths.begin(), lPaths.end());
    const std::string lNote = orderByTicks(&lPaths);
    npRecordings->push_back({lName, lPaths});
    if (!lNote.empty()) npRecordings->back().mNote = "a clock was set while recording: by their ticks " + lNote;
  }
  std::sort(lOthers.begin(), lOthers.end());
  for (const tool::RecordKind lKind : {tool::LOG_RECORD, tool::SENSOR_RECORD}) {
    for (const std::string& lPath : lOthers) {
      if (tool::firstRecordOf(lPath).mKind == lKind) npRecordings->push_back({lPath, {lPath}});
    }
  }
}

bool hasBothKinds(std::vector<Recording>::const_iterator nBegin, std::vector<Recording>::const_iterator nEnd) {
  bool lHas[3] = {};
  for (; nBegin != nEnd; ++nBegin) lHas[tool::firstRecordOf(nBegin->mPaths.front()).mKind] = true;
  return lHas[tool::LOG_RECORD] && lHas[tool::SENSOR_RECORD];
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
  const auto lFirst = npRecordings->begin() + static_cast<std::ptrdiff_t>(lBefore);
  const bool lHasBoth = hasBothKinds(lFirst, npRecordings->end());
  for (auto lRecording = lFirst; lRecording != npRecordings->end(); ++lRecording) {
    lRecording->mDirectory = lBefore + 1;
    lRecording->mHasBothKinds = lHasBoth;
  }
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
