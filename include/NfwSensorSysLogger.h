/// @file
/// The sensor system log, as an application switches it.
#pragma once

#include "NfwExport.h"

namespace nfw {

template <class T>
class OneInstance;

/// Starts and stops the SensorSysLoggerManager; every operation is the manager's of the same name.
class NFW_API SensorSysLogger {
 public:
  static SensorSysLogger* get();
  static void destroy();  ///< also destroys the manager

  SensorSysLogger(const SensorSysLogger&) = delete;
  SensorSysLogger& operator=(const SensorSysLogger&) = delete;
  ~SensorSysLogger() = default;

  bool initialize();
  void shutdown();
  bool startRecord();
  bool stopRecord();
  bool isRecording() const;
  bool startPlay(const char* npPath);
  bool stopPlay();
  bool isPlaying() const;

 private:
  SensorSysLogger() = default;
  friend class OneInstance<SensorSysLogger>;
  bool end() { return true; }  // it has no thread
};

}  // namespace nfw
