#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace logtool {

/// Files that are read as one, in their order.
struct Recording {
  std::string mName;                ///< for people: DIR/PREFIX, or the file's path
  std::vector<std::string> mPaths;  ///< "-" is standard input
  size_t mDirectory = 0;            ///< tells the directories of the command line apart; 0 for a file that it names
  std::string mNote{};              ///< what there is to say of the order of its files
  bool mHasBothKinds = false;       ///< that directory has logs and sensor logs
};

/// Finds what the words of a command line name, and says nothing: Recording::mNote is for the caller to say.
///  A file is a recording of its own, "-" too. A directory holds the files
/// of one or more recordings: DIR/PREFIX_YYYYMMDD-hhmmss_NN.log, in the order of their time and number unless the ticks
/// contradict (orderByTicks), one recording for each prefix in alphabetical order; then every other file in it that is
/// a recording, logs first.
/// @return false, with a reason, when a word names nothing to read
bool findRecordings(const std::vector<std::string>& nWords, std::vector<Recording>* npRecordings,
                    std::string* npReason);

/// Bytes of all files; 0 when one of them has no size, as a pipe.
uint64_t totalSize(const std::vector<Recording>& nRecordings);

}  // namespace logtool
