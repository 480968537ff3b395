/// @file
/// The sensor system log.
#pragma once

#include <memory>

#include "NfwExport.h"
#include "NfwLogPlayPosition.h"
#include "NfwLogRecordCounts.h"
#include "utl/Msg.h"

namespace nfw {

template <class T>
class OneInstance;
class SysLogPlayDataDispatcher;
class SysLogPlayListener;
class SysLogPlayer;

/// Records sensor data compactly through the system log service, and plays a file of such records back with its
/// recorded timing. Positioning and dead reckoning record here by themselves; an application starts and stops.
///
/// @code
/// nfw::SensorSysLoggerManager* const lpManager = nfw::SensorSysLoggerManager::get();
/// lpManager->initialize();
/// lpManager->startRecord();                                    // the service decides about the file
/// lpManager->stopRecord();
/// lpManager->startPlay("/data/sensor.bin");                    // to the attached players and play listeners
/// lpManager->stopPlay();
/// lpManager->shutdown();
/// nfw::SensorSysLoggerManager::destroy();
/// @endcode
///
/// The most players and play listeners are the numbers of the Logger, whose statics are read when this is created.
///
/// Threads and ownership are those of the Logger: every operation may be called from any thread, players are called on
/// the manager's thread, play listeners each on a thread of their own replay, and nothing that is attached is owned.
class NFW_API SensorSysLoggerManager : public utl::ThreadMsgListener {
 public:
  /// The manager, made at the first call. Starts nothing.
  static SensorSysLoggerManager* get();
  /// Deletes it, after a shutdown() if there was none. Not from a callback, and not while another thread still uses
  /// what get() returned; threads in the static write() are waited for, those that come later are not. One whose
  /// thread did not end, because a callback has not returned, is left behind instead of deleted, without another wait:
  /// the callback may return into it, nobody is called any more, and the next get() makes a new manager.
  static void destroy();

  ~SensorSysLoggerManager() override;
  SensorSysLoggerManager(const SensorSysLoggerManager&) = delete;
  SensorSysLoggerManager& operator=(const SensorSysLoggerManager&) = delete;

  /// @return false when the thread cannot be started, or this was called before
  bool initialize();
  /// Ends recording and playing and stops the thread; final. A player or a play listener that does not return is waited
  /// for 30 s, with a line. Not from a callback.
  void shutdown();

  bool startRecord();  ///< false while recording
  bool stopRecord();
  bool isRecording() const;
  /// What became of the records offered since the manager was made; recorded is what the system log service took.
  LogRecordCounts getRecordCounts() const;

  /// Attaching null, or a player that is attached already, is a success.
  /// @return false when not initialised, when the list is full, and inside a play listener's call
  bool attachPlayer(SysLogPlayer* npPlayer);
  /// As above; also false while playing, for a negative id and for one that has a listener.
  bool attachPlayListener(int nLogTypeId, SysLogPlayListener* npListener);
  /// @return true also for what is not attached; false when the manager's thread does not run
  bool detachPlayer(SysLogPlayer* npPlayer);
  bool detachPlayListener(SysLogPlayListener* npListener);

  /// Plays a file to the attached play listeners; its first record is due 1000 ms from now.
  /// @return false while playing
  bool startPlay(const char* npPath);
  /// Plays several files as one recording, as the Logger does; its records have no dates, so where the times begin anew
  /// a second lies between them.
  bool startPlay(const char* const* nppPaths, unsigned int nNum);
  /// Ends playback. When it returns no play listener is in a call any more - unless it is called from inside one: then
  /// it takes effect behind that call, on this playback only and not on a later one.
  bool stopPlay();
  bool isPlaying() const;  ///< from startPlay() to stopPlay(), also when nothing is left to play

  /// Control of the playback: the Logger's operations, with its ranges, results and threads.
  bool pausePlay();
  bool resumePlay();
  bool stepPlay();
  bool setPlayRate(unsigned int nPermille);
  bool seekPlay(unsigned int nOffsetMs);
  LogPlayPosition getPlayPosition() const;

  /// For the replays.
  void setLogDispatchEnd(SysLogPlayDataDispatcher* npDispatcher);

  /// Records `nSize` bytes, at most 1121, under a sensor log type id and a version of 0 to 15. What is offered while
  /// there is no manager or it does not record is lost without a word. Calls the system log service on this thread.
  static void write(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize);
  void writeImp(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize);

  void receiveMsg(int nThreadId, utl::ThreadRawMsg& nMsg) override;

 private:
  struct Inside;

  SensorSysLoggerManager();
  friend class OneInstance<SensorSysLoggerManager>;
  bool end();

  const std::unique_ptr<Inside> mpInside;
};

}  // namespace nfw
