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

/// Colours by level on standard error: by default only when that is a terminal.
void setColoured(bool nColoured);

/// Where BinaryLogWrite appends. A thread writes what it was given, at most a tenth of a second later; up to 1 MiB
/// waits while the file system does not take it. Null or empty closes the file: writes then fail.
///
/// The file before is closed when it holds all that was given for it, when it cannot be written, or after 10 s.
/// False, with errno, when the file cannot be opened, or no thread be made: the one before then stays; and when what
/// was given for the one before did not all get into it. Any thread may call, no sink.
bool setBinaryLogFile(const char* npPath);

/// Waits until the file holds all that BinaryLogWrite was given so far. False when it cannot be written now, or
/// `nTimeoutMs` are over. Any thread may call.
bool flushBinaryLog(unsigned int nTimeoutMs);

/// What became of the records given to BinaryLogWrite since the file was set.
struct BinaryLogCounts {
  unsigned long long mRecorded = 0;  ///< whole in the file
  unsigned long long mBytes = 0;     ///< of these
  unsigned long long mWaiting = 0;   ///< taken, and not in the file yet
  unsigned long long mRefused = 0;   ///< not taken: BinaryLogWrite gave -1
  unsigned long long mFailed = 0;    ///< taken, and given up when the file was closed
  int mError = 0;                    ///< errno of the file's last write; 0: it took what it was given
};

/// Of the file that is set; after it was closed, what became of all of them in the end. Any thread may call.
BinaryLogCounts binaryLogCounts();

/// Lines that standard error did not take since the start (a pipe that nobody reads, for instance).
unsigned long long droppedLines();

/// The filter level that a type was registered with or set to last, -1 for a type that is not registered. The service
/// only keeps it: who writes through applog has filtered before.
int registeredLevel(int nType);

}  // namespace syslogservice
