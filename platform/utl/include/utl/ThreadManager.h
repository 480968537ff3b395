/// @file
/// Notices to the watchdog of the unit.
#pragma once

namespace utl {

class Thread;

/// Names a statement that may block, and whether it is about to begin (phase 1) or is over (phase 2).
/// The texts are literals: they are kept by address.
class StatementInfo {
 public:
  constexpr StatementInfo(const char* npFile, const char* npFunction, int nLine, int nPhase)
      : mpFile(npFile), mpFunction(npFunction), mLine(nLine), mPhase(nPhase) {}

  const char* getFile() const { return mpFile; }
  const char* getFunction() const { return mpFunction; }
  int getLine() const { return mLine; }
  int getPhase() const { return mPhase; }

 private:
  const char* mpFile;
  const char* mpFunction;
  int mLine;
  int mPhase;
};

class ThreadManager {
 public:
  /// Notes where the calling thread is. A few plain stores: no lock, no log, no allocation.
  static void keepAliveWatchdog(const StatementInfo& nStatement);

  /// Takes a stopped thread out of the thread management; its owner may then delete it.
  static void remove(Thread* npThread);

  /// The last notice of the calling thread, null before the first: for the watchdog of the unit and for tests.
  static const StatementInfo* lastStatement();
};

}  // namespace utl
