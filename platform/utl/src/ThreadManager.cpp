#include "utl/ThreadManager.h"

namespace utl {

namespace {

// Field by field, by volatile stores: the compiler would else copy the notice in pieces wider than those it was just
// built of, for which the processor has to wait. Every lock of the framework comes through here twice.
struct Notice {
  const char* volatile mpFile;
  const char* volatile mpFunction;
  volatile int mLine;
  volatile int mPhase;
};

// The fast model: part of the thread's own block, found without a call. The library is loaded with the program.
thread_local Notice gLast __attribute__((tls_model("initial-exec"))) = {nullptr, nullptr, 0, 0};
thread_local StatementInfo gAsked{nullptr, nullptr, 0, 0};

}  // namespace

void ThreadManager::keepAliveWatchdog(const StatementInfo& nStatement) {
  gLast.mpFile = nStatement.getFile();
  gLast.mpFunction = nStatement.getFunction();
  gLast.mLine = nStatement.getLine();
  gLast.mPhase = nStatement.getPhase();
}

// A thread leaves the management by ending: no list is kept here that could still name it.
void ThreadManager::remove(Thread* /*npThread*/) {}

const StatementInfo* ThreadManager::lastStatement() {
  if (gLast.mPhase == 0) return nullptr;
  gAsked = StatementInfo(gLast.mpFile, gLast.mpFunction, gLast.mLine, gLast.mPhase);
  return &gAsked;
}

}  // namespace utl
