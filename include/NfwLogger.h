/// @file
/// The data logger.
#pragma once

#include <memory>

#include "NfwExport.h"
#include "NfwLogPlayPosition.h"
#include "NfwLogRecordCounts.h"
#include "utl/Msg.h"

namespace nfw {

template <class T>
class OneInstance;
class LogPlayDataDispatcher;
class LogPlayListener;
class LogPlayer;
class LogRecordEventListener;

/// A log type id that stands for "none configured".
const int NO_LOGGER_ID = 0x7FFFFFFF;

/// Records typed, time-stamped data into log record files, and plays a file back with its recorded timing.
///
/// @code
/// nfw::Logger* const lpLogger = nfw::Logger::get();
/// lpLogger->initialize();
/// lpLogger->startRecord("/data/log", "drive", nullptr);      // the directory exists
/// nfw::Logger::write(20, lText, lLength);                    // any thread, from here on; also every APPLOG line
/// lpLogger->stopRecord();
///
/// lpLogger->attachPlayListener(20, &lListener);              // receives the records of id 20
/// lpLogger->startPlay("/data/log/drive_20250101-120000_00.log");
/// ...
/// lpLogger->stopPlay();
/// lpLogger->detachPlayListener(&lListener);
/// lpLogger->shutdown();
/// nfw::Logger::destroy();
/// @endcode
///
/// Its sizes are static and read when it is created; initializeNaviAppFramework sets them from the configuration.
///
/// Threads: every operation may be called from any thread. Listeners and players are called on the logger's thread,
/// play listeners each on a thread of their own replay; what may be called from there stands with their classes.
/// Nothing that is attached is owned: detach it before it goes. When a detach operation has returned, no call of the
/// detached object begins any more - unless it was made from inside a play listener's call, where it only takes effect
/// behind that call. attach and detach wait for the logger's thread: hold no lock that a callback wants.
class NFW_API Logger : public utl::ThreadMsgListener {
 public:
  static void initializeMaxRecordEventListenerNum(unsigned int nValue);
  static void initializeMaxPlayerNum(unsigned int nValue);
  static void initializeMaxLogTypeNum(unsigned int nValue);
  static void initializeMaxLogFieldSize(unsigned int nValue);
  static void initializeLogBufferSize(unsigned int nValue);
  static void initializeMaxLogFileSize(unsigned int nValue);

  static unsigned int mMaxRecordEventListenerNum;
  static unsigned int mMaxPlayerNum;
  static unsigned int mMaxLogTypeNum;    ///< the most play listeners, one a log type id
  static unsigned int mMaxLogFieldSize;  ///< bytes of the largest record, written or played; log lines take 1023
  static unsigned int mLogBufferSize;    ///< bytes between the callers and the disk; 64 KiB and more keep callers quick
  static unsigned int mMaxLogFileSize;   ///< bytes; a file that would grow past it is followed by a new one

  /// The logger, made at the first call. Starts nothing.
  static Logger* get();
  /// Deletes it, after a shutdown() if there was none. Not from a callback, and not while another thread still uses
  /// what get() returned; threads in the static write() are waited for, those that come later are not. One whose
  /// thread did not end, because a callback has not returned, is left behind instead of deleted, without another wait:
  /// the callback may return into it, nobody is called any more, and the next get() makes a new logger.
  static void destroy();

  ~Logger() override;
  Logger(const Logger&) = delete;
  Logger& operator=(const Logger&) = delete;

  /// Starts the threads. @return false when they cannot be started, or this was called before
  bool initialize();
  /// Ends recording and playing and stops the threads; final. What is buffered is written out first. What is still
  /// attached is named in the log. A player or a play listener that does not return is waited for 30 s, with a line.
  /// Not from a callback.
  void shutdown();

  /// Attaching null, or what is attached already, is a success.
  /// @return false when not initialised, when the list is full, and inside a play listener's call
  bool attachRecordEventListener(LogRecordEventListener* npListener);
  bool attachPlayer(LogPlayer* npPlayer);
  /// As above; also false while playing, for a negative id and for one that has a listener.
  bool attachPlayListener(int nLogTypeId, LogPlayListener* npListener);

  /// @return true also for what is not attached; false when the logger's thread does not run
  bool detachRecordEventListener(LogRecordEventListener* npListener);
  bool detachPlayer(LogPlayer* npPlayer);
  bool detachPlayListener(LogPlayListener* npListener);  ///< from all its ids; stops their replays

  /// Begins a recording: files dir/prefix_YYYYMMDD-hhmmss_NN.log, one after the other.
  /// @param npDirectory exists already; 259 characters at most, file name included
  /// @param npBackupDirectory copied into the recording as dir/backup, or null; until that is done no record is taken
  /// @return false while recording, and when no file can be made
  bool startRecord(const char* npDirectory, const char* npFilePrefix, const char* npBackupDirectory);
  /// Writes out what is buffered and ends the recording; a backup under way is cancelled and waited for.
  bool stopRecord();
  /// The directory of the last recording, empty before the first. @return false when it does not fit
  bool getRecordingDir(char* npBuffer, unsigned int nSize);
  bool isRecording() const;
  /// What became of the records offered since the logger was made. After stopRecord() it is final: what was recorded is
  /// in files. While recording, records count as recorded as soon as they are taken, and those of a file that somebody
  /// has removed as lost. Waits for the disk.
  LogRecordCounts getRecordCounts() const;
  LogBackup getBackup() const;  ///< of the last startRecord(); records are taken unless it runs

  /// Hands what is buffered to the file. Less than 10 KiB otherwise waits in the buffer without a time limit, and is
  /// lost with a killed process: call it as often as the records are worth. Waits for the disk.
  void flush();

  /// What is recorded goes to the medium every `nIntervalMs`, by the writer's own thread: a power cut loses no more
  /// than that. 0, the default: whenever the system likes. A medium that takes its time holds up nobody else.
  /// @return false when not initialised
  bool setSyncInterval(unsigned int nIntervalMs);
  /// A record that comes `nLimitMs` or more after its file was begun begins another file, as one that would not fit
  /// does. 0, the default: files end by their size alone. Takes effect with the next file.
  /// @param nIsAligned files also end at the multiples of the limit in the local day: 3,600,000 is on the hour
  void setMaxFileTime(unsigned int nLimitMs, bool nIsAligned);

  /// Plays a file to the attached play listeners; its first record is due 1000 ms from now.
  /// @return false while playing
  bool startPlay(const char* npPath);
  /// Plays several files as one recording, which begins with the first file's first record. Between two files lies what
  /// the recorded times tell; where they begin anew, what the dates of the records tell, else a second. Looks into each
  /// file on the caller's thread. @return false, with a log line, also when a file cannot be read or has no record
  bool startPlay(const char* const* nppPaths, unsigned int nNum);
  /// Ends playback. When it returns no play listener is in a call any more - unless it is called from inside one: then
  /// it takes effect behind that call, on this playback only and not on a later one.
  bool stopPlay();
  /// The directory of the file being played. @return false, with a log line, while not playing
  bool getPlayingDir(char* npBuffer, unsigned int nSize);
  bool isPlaying() const;  ///< from startPlay() to stopPlay(), also when nothing is left to play

  /// Control of the playback, for all its log types at once. Any thread, also from a callback. When the call returns it
  /// has taken effect, but for a record that was on its way - unless it is called from inside a play listener: then it
  /// takes effect behind that call. Every playback begins at the recorded pace.
  /// @return false while not playing
  bool pausePlay();
  bool resumePlay();
  /// Plays the next record of any type, and what is due at the same millisecond; pauses where nobody has.
  bool stepPlay();
  /// @param nPermille of the recorded pace, 10 to 100,000; kept over pauses and seeks. No record comes before its time;
  /// the second before the first one stays a second.
  bool setPlayRate(unsigned int nPermille);
  /// Goes on from the record that lies `nOffsetMs` behind the recording's first one: no listener receives anything of
  /// before, and players are told. Waits for play listeners as stopPlay() does. Possible also when all was played.
  /// @return false also behind the last record, and with a log line when the file cannot be read
  bool seekPlay(unsigned int nOffsetMs);
  LogPlayPosition getPlayPosition() const;

  /// For the replays.
  void setLogDispatchEnd(LogPlayDataDispatcher* npDispatcher);

  /// Records `nSize` bytes (at most mMaxLogFieldSize) under a log type id of 0 or more. The data is copied; the caller
  /// waits for the disk only when the buffer or the file is full. What is offered while there is no logger, while it
  /// does not record, or while a backup runs, is lost without a word; so are lines of the application log (id 255) as
  /// long as nothing can be written to the file, which leaves the buffer to data. getRecordCounts() counts what is lost
  /// while it records.
  static void write(int nLogTypeId, const void* npData, unsigned int nSize);
  void writeImp(int nLogTypeId, const void* npData, unsigned int nSize);

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  struct Inside;

  Logger();
  friend class OneInstance<Logger>;
  bool end();

  const std::unique_ptr<Inside> mpInside;
};

}  // namespace nfw
