// What the host application decides about the stand-in of the system log service. The unit's own service has no such
// header: the framework never includes it.
#pragma once

namespace syslogservice {

/// Receives each line in place of standard error. Called on the logging thread, by several threads at once; must not
/// log, must not block and must not set the sink.
class Sink {
 public:
  virtual ~Sink() = default;
  virtual void writeLine(int nType, int nLevel, const char* npText) = 0;
};

/// Sets the sink, null for standard error. Returns the one before. The caller keeps ownership; when the call returns no
/// thread is inside the old sink any more.
Sink* setSink(Sink* npSink);

/// Writes a line as it goes without a sink: for a sink that lets some lines pass.
void writeToStandardError(int nType, int nLevel, const char* npText);

/// Colours by level on standard error: by default only when that is a terminal.
void setColoured(bool nColoured);

/// Where BinaryLogWrite appends. Null or empty closes the file: writes then fail.
/// False when the file cannot be opened; the one before then stays.
bool setBinaryLogFile(const char* npPath);

/// Lines that standard error did not take since the start (a pipe that nobody reads, for instance).
unsigned long long droppedLines();

/// The filter level that a type was registered with or set to last, -1 for a type that is not registered. The service
/// only keeps it: who writes through applog has filtered before.
int registeredLevel(int nType);

}  // namespace syslogservice
