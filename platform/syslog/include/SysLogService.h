/// @file
/// The system log service. All functions are at global scope, may be called from any thread, never call back into
/// the framework, and never block their caller on a stuck reader of the log.
#pragma once

/// Registers a source of log lines. `npName` may be null. False when the service refuses the type.
bool registerLogType(int nType, const char* npName, int nLevel);
void setFilterLevel(int nType, int nLevel);
void setAllFilterLevel(int nLevel);

/// Writes one finished text: it is not a format, a '%' in it stands for itself.
void applog(int nType, int nLevel, const char* npText);

/// Appends exactly these bytes to the binary log file. `nKind` is 0. 0 on success, -1 on failure.
int BinaryLogWrite(int nKind, const void* npData, unsigned int nSize);
