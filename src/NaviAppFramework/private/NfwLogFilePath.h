// Names of new log record files.
#pragma once

namespace nfw {

/// Characters of a path with the terminator, wherever the recording services keep one.
const unsigned int LOG_PATH_SIZE = 260;

/// dir/prefix_YYYYMMDD-hhmmss_NN.log, NN being the first serial of this second whose file does not exist yet.
/// False, with a log line, when there is none (100 files in one second) or the path does not fit.
bool createLogFilePath(const char* npDirectory, const char* npFilePrefix, char (&nPath)[LOG_PATH_SIZE]);

}  // namespace nfw
