// Hands sensor records to the system log service.
#pragma once

#include <atomic>

#include "NfwOperationControl.h"
#include "NfwThreadSafety.h"
#include "RecordTally.h"
#include "ZTSync.h"

namespace nfw {

/// Any thread may call. The service is called on the caller's thread under the lock, so that records do not mix; it
/// must not log through the framework. Where the records go is the service's business.
class SensorSysLogWriter {
 public:
  static constexpr int SUCCESS = 0;
  static constexpr int FAILURE = 1;
  static constexpr int NOT_ACCEPTED = 2;  ///< shutting down, or not recording

  SensorSysLogWriter() = default;
  virtual ~SensorSysLogWriter() = default;
  SensorSysLogWriter(const SensorSysLogWriter&) = delete;
  SensorSysLogWriter& operator=(const SensorSysLogWriter&) = delete;

  bool initialize();
  bool start();
  void stop() { mIsRecording = false; }
  void shutdown();
  bool isRecording() const { return mIsRecording; }

  /// `nLogTypeId` and `nLogVersion` are 0 to 15, `nSize` at most 1200.
  int write(int nLogTypeId, int nLogVersion, void* npData, unsigned int nSize);

  LogRecordCounts getRecordCounts();
  /// A record that did not come as far as write().
  void refuse(LogLoss nReason);

 private:
  enum State : unsigned char { CREATED, INITIALIZED, SHUT_DOWN };

  int refused(LogLoss nReason, int nError = 0) NFW_REQUIRES(mSync);
  static bool isValid(int nLogTypeId, int nLogVersion, const void* npData, unsigned int nSize);

  std::atomic<State> mState{CREATED};
  std::atomic<bool> mIsRecording{false};
  ZTSync mSync{"nfw::SensorSysLogWriter"};
  RecordTally mTally NFW_GUARDED_BY(mSync);
  OperationControl mControl;
};

}  // namespace nfw
