/// @file
/// What the host application decides about the stand-in of the system log service. The unit's own service has no such
/// header: the framework never includes it.
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

/// Where BinaryLogWrite appends. A thread of its own writes, a tenth of a second later at most: that is what a killed
/// process loses. While the file system does not answer, or is full, 1 MiB or 32768 records wait, and are tried again;
/// what finds no room is refused. The file holds whole records only. An application that ends without closing loses
/// what waits.
///
/// False, with errno, when the file cannot be opened within 10 s, or memory or a thread are not to be had: the one
/// before then stays. Otherwise that one is closed first.
/// Null or empty closes the file: writes then fail. False, with errno, when it cannot take, or does not take within
/// 10 s, all that waits; that is given up.
bool setBinaryLogFile(const char* npPath);

/// Files that follow one another.
struct BinaryLogFiles {
  const char* mpDirectory = nullptr;  ///< exists already
  const char* mpPrefix = nullptr;     ///< the files are prefix_YYYYMMDD-hhmmss_NN.log, by the local time of their begin
  unsigned int mMaxSize = 0;          ///< bytes; a record that would not fit begins another file. 0: without a limit
  unsigned int mMaxTimeMs = 0;        ///< a record that is written so long after its file was begun, too. 0: likewise
  bool mIsAligned = false;            ///< files also end at the multiples of that in the local day
};

/// As setBinaryLogFile, with files that are all new. Copies the texts. Where no other file can be made the present one
/// goes on beyond its limits; when somebody has removed it another one follows, and its records have failed.
bool setBinaryLogFiles(const BinaryLogFiles& nFiles);

/// Of the file or the files that are set next: the writer's thread brings what was recorded to the medium so long
/// after it was taken, and files that end at once. 0, as in the beginning: whenever the system likes.
void setBinaryLogSyncInterval(unsigned int nIntervalMs);

/// Waits until the file holds what BinaryLogWrite was given so far. False when it cannot be written now, or
/// `nTimeoutMs` are over. Any thread may call, as the above; none of them from a sink.
bool flushBinaryLog(unsigned int nTimeoutMs);

/// What became of the records given to BinaryLogWrite since the file was set.
struct BinaryLogCounts {
  unsigned long long mRecorded = 0;  ///< whole in the file
  unsigned long long mBytes = 0;     ///< of these
  unsigned long long mWaiting = 0;   ///< taken, and not in the file yet
  unsigned long long mRefused = 0;   ///< not taken: BinaryLogWrite gave -1
  unsigned long long mFailed = 0;    ///< taken, and given up when the file was closed, or in a file that was removed
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
