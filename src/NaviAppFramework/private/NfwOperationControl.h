// The gate of a service: refuses operations once a shutdown has begun, and waits for those under way.
#pragma once

#include <atomic>
#include <cstdint>

#include "NfwThreadSafety.h"
#include "ZTSync.h"
#include "utl/Event.h"

namespace nfw {

/// Any thread may call. An operation asks start() and, only when that was true, tells complete() when it is over,
/// normally by an AutoCompleteOperation. A shutdown calls prohibit(), never from inside an operation of the same gate:
/// it would wait for itself. An operation does not ask its own gate again either: it would be refused half-way.
///
/// While the gate is open and nobody waits in prohibit(), an operation costs two exchanges and no lock.
class OperationControl {
 public:
  OperationControl() = default;
  OperationControl(const OperationControl&) = delete;
  OperationControl& operator=(const OperationControl&) = delete;

  bool start();     ///< true when the operation may run
  void complete();  ///< without a running operation it does nothing
  bool prohibit();  ///< closes the gate and returns when no operation is left; pair with permit() only when true
  void permit();    ///< takes one prohibit() back

 private:
  void completeWatched() NFW_EXCLUDES(mSync);
  bool close() NFW_EXCLUDES(mSync);
  bool isIdle() NFW_EXCLUDES(mSync);
  void setFlags() NFW_REQUIRES(mSync);

  std::atomic<uint64_t> mStartCount{0};  // low half: operations under way; above it whether they are watched, and why
  uint32_t mStopRequestedCount NFW_GUARDED_BY(mSync) = 0;  // prohibit() calls outstanding
  uint32_t mWaiterNum NFW_GUARDED_BY(mSync) = 0;           // prohibit() calls that have not returned
  ZTSync mSync{"nfw::OperationControl"};                   // held by whoever changes a watched gate
  utl::Event mIdleEvent{true};                             // on when nobody has to wait in prohibit()
};

/// Completes the operation that start() admitted, on every way out.
class AutoCompleteOperation {
 public:
  explicit AutoCompleteOperation(OperationControl& nControl) : mControl(nControl) {}
  ~AutoCompleteOperation() { mControl.complete(); }
  AutoCompleteOperation(const AutoCompleteOperation&) = delete;
  AutoCompleteOperation& operator=(const AutoCompleteOperation&) = delete;

 private:
  OperationControl& mControl;
};

/// Opens the gate again, on every way out.
class AutoPermitOperation {
 public:
  explicit AutoPermitOperation(OperationControl& nControl) : mControl(nControl) {}
  ~AutoPermitOperation() { mControl.permit(); }
  AutoPermitOperation(const AutoPermitOperation&) = delete;
  AutoPermitOperation& operator=(const AutoPermitOperation&) = delete;

 private:
  OperationControl& mControl;
};

}  // namespace nfw
