/// @file
/// The application log.
///
/// A source of log lines is a *log type*: a number that the application chooses, registered once with a name (the
/// prefix of its lines) and a filter level. A line that passes its type's filter goes to the system log service, and
/// with its prefix to the data logger, so that a recording holds the log in order with the data.
///
/// @code
/// nfw::registerLogType(100, "<NAVI>MAP    ", nfw::LOG_LEVEL_DETAIL);
/// APPLOG(100, nfw::LOG_LEVEL_ERROR, "Can't load tile %d", lTile);
/// @endcode
///
/// Any thread may call every function here, callbacks included. Nothing is allocated to log a line; a line holds at
/// most 1023 characters, a longer one is cut and ends in "...".
#pragma once

#include "NfwExport.h"

namespace nfw {

/// Levels. One above 5, or below 0, counts as 5 wherever a level is taken in.
enum LogLevel {
  LOG_LEVEL_NONE = 0,  ///< never written; as a filter: nothing passes
  LOG_LEVEL_ERROR = 1,
  LOG_LEVEL_WARNING = 2,
  LOG_LEVEL_INFO = 3,
  LOG_LEVEL_DETAIL = 4,
  LOG_LEVEL_DEBUG = 5,
};

/// The library's own log type.
const int LOG_TYPE_NFW = 10;

/// The data-logger id of APPLOG lines.
const int APPLOG_LOGGER_ID = 255;

/// Registers a type or replaces its record.
/// @param npName at most 31 characters
/// @return false when the system log service refuses, or the name is null or too long
NFW_API bool registerLogType(int nType, const char* npName, int nLevel);

/// Sets the highest level that a registered type writes; an unregistered type is left alone.
NFW_API void setFilterLevel(int nType, int nLevel);

/// Sets the filter level of every registered type.
NFW_API void setAllFilterLevel(int nLevel);

/// @return the filter level, 6 for a type that is not registered
NFW_API int getFilterLevel(int nType);

/// Forgets every type. Later lines are filtered like those of an unregistered type: level 4, no prefix.
NFW_API void finalizeAppLog();

}  // namespace nfw

/// Writes one line. A type that was never registered passes up to level 4, without a prefix, as type -1.
NFW_API void APPLOG(int nType, int nLevel, const char* npFormat, ...) NFW_PRINTF(3, 4);

/// As APPLOG, under the given data-logger id.
NFW_API void APPLOG1(int nType, int nLevel, int nLoggerId, const char* npFormat, ...) NFW_PRINTF(4, 5);

/// Writes a text to the data logger only: no filter, no prefix, nothing to the system log service.
NFW_API void LOGGERLOG(int nLoggerId, const char* npFormat, ...) NFW_PRINTF(2, 3);
