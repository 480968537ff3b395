// Names of new log record files.
#pragma once

namespace nfw {

/// Characters of a path with the terminator, wherever the recording services keep one.
const unsigned int LOG_PATH_SIZE = 260;

/// dir/prefix_YYYYMMDD-hhmmss_NN.log, NN being the first serial of this second whose file does not exist yet. The file
/// is made, empty, so that the name is nobody else's: of two recorders in one directory, in one process or in two, each
/// gets its own. Where it cannot be made the name is given all the same, and opening it will fail.
/// False, with a log line, when there is none (100 files in one second) or the path does not fit.
/// @param npIsMade whether the file was made here
bool createLogFilePath(const char* npDirectory, const char* npFilePrefix, char (&nPath)[LOG_PATH_SIZE], bool* npIsMade);

/// Whether the name, without its directory, is one that createLogFilePath() gives for the prefix.
bool isLogFileName(const char* npName, const char* npFilePrefix);

/// Characters that a name has behind its prefix.
const unsigned int LOG_FILE_SUFFIX_SIZE = 23;

}  // namespace nfw
