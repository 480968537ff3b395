#pragma once

#include <atomic>
#include <string>

#include "Failure.h"
#include "Limits.h"
#include "LogReport.h"
#include "Progress.h"
#include "Worker.h"

namespace drive {

/// Begins, flushes, watches and ends both recordings, all of it on a thread of its own: a medium that does not answer
/// holds up nothing else. Any thread may call.
class Recorder {
 public:
  Recorder(const RecordOptions& nRecord, const Progress& nProgress, Failure& nFailure)
      : mRecord(nRecord), mProgress(nProgress), mFailure(nFailure) {}

  /// @param nOnReady called when what the options ask for is being recorded, or cannot be: that is noted then
  /// False where the system gives no thread.
  bool start(Worker::Task nOnReady);
  /// Records below a directory that has just appeared, and stops because it goes.
  void beginIn(const std::string& nDirectory);
  void endIn();
  void keep();            ///< marks the last files as kept, when the medium takes it
  bool isSilent() const;  ///< the medium does not answer
  void watch();           ///< says so in the log, when called now and then
  void giveUp();          ///< nothing will end the recordings any more: what is known of them stands
  /// Ends the recordings and both log services. False when the medium does not answer: they are left behind.
  bool finish();

  bool isLeftBehind() const { return mIsLeftBehind; }

  const LogReport& getLog() const { return mLog; }
  const LogReport& getSensorLog() const { return mSensorLog; }

 private:
  void begin(const Worker::Task& nOnReady);
  bool startLog();
  bool startRecord(const std::string& nDirectory);
  void keepNow();
  void keepIn(const std::string& nDirectory, const std::string& nName, LogReport& nLog) const;
  void mendIn(const std::string& nDirectory, const std::string& nPrefix) const;
  void keepWithin(const std::string& nDirectory);
  void keepWithinForGood();
  bool startSensorLog();
  bool setSensorFile();
  bool setSensorFiles(const std::string& nDirectory, const std::string& nPrefix);
  void awaitBackup();
  void look();
  nfw::LogRecordCounts sensorCounts() const;
  void writeEndNotes() const;
  void end();

  static constexpr std::chrono::seconds FLUSH_TIME{1};       // what a killed process loses at most
  static constexpr std::chrono::seconds LATE_TIME{3};        // a medium that takes so long is told of
  static constexpr std::chrono::seconds END_TIME{25};        // and after so long in the end it is left behind,
  static constexpr std::chrono::seconds SILENT_END_TIME{5};  // or after so long, when it was told of before
  const RecordOptions& mRecord;
  const Progress& mProgress;
  Failure& mFailure;
  LogReport mLog{"the data log"};
  LogReport mSensorLog{"the sensor log"};
  bool mIsLeftBehind = false;
  std::atomic<bool> mAwaitsBackup{false};
  Spell mSilence;             // of the medium; on the watching thread
  int mSensorFile = -1;       // where the sensor log is one file; on the worker's thread, as what follows
  std::string mSensorPrefix;  // where it is several
  bool mHasSensorLog = false;
  bool mHasBegun = false;
  Limits mLimits, mSensorLimits;
  Worker mWorker;
};

}  // namespace drive
