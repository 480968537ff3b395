#pragma once

#include <string>
#include <vector>

#include "Record.h"

namespace drive {

/// The files that the words of a command line name, in the order in which they are played. A directory gives the files
/// of the recording in it by their names, without those that have no record yet. Those of the sensor log need no such
/// names.
/// @param nPrefix of the files of a directory that holds several recordings; empty: it holds one
/// @param npReason of false: the word, and what is wrong with it
bool findRecordingFiles(const std::vector<std::string>& nWords, tool::RecordKind nKind, const std::string& nPrefix,
                        std::vector<std::string>* npFiles, std::string* npReason);

}  // namespace drive
