// Which messages run on which thread, so that a thread's queue slots hold the largest of them.
#pragma once

#include <tuple>

#include "utl/Msg.h"

namespace nfw {

/// The message threads of the library. The numbers of the two shared threads are fixed; several source files enter
/// their messages there.
enum ThreadMsgKind {
  THREAD_MSG_COMPONENT_MANAGER = 0,  ///< what the component manager posts to the application's shared thread
  THREAD_MSG_COMPONENT_MANAGER_WATCH = 1,
  THREAD_MSG_GNSS = 2,
  THREAD_MSG_DEAD_RECKONING = 3,
  THREAD_MSG_LOG_WRITER = 4,
  THREAD_MSG_LOGGER = 5,
  THREAD_MSG_LOG_PLAY = 6,  ///< every replay thread of the data logger
  THREAD_MSG_SENSOR_SYS_LOGGER = 7,
  THREAD_MSG_MOUNT_MANAGER = 8,
};

/// One source file's messages of one thread: entered when the library is loaded, released when it is unloaded.
class ThreadMsgProfiler {
 public:
  struct Sample {
    const char* mpName;
    utl::Msg* mpMsg;
  };

  ThreadMsgProfiler(int nKind, const Sample* npSamples, unsigned int nSampleNum);
  ~ThreadMsgProfiler();
  ThreadMsgProfiler(const ThreadMsgProfiler&) = delete;
  ThreadMsgProfiler& operator=(const ThreadMsgProfiler&) = delete;

  int getKind() const { return mKind; }
  unsigned int getMaxMsgDataSize() const;

 private:
  friend class ThreadMsgProfilerManager;
  const int mKind;
  const Sample* const mpSamples;
  const unsigned int mSampleNum;
  ThreadMsgProfiler* mpNext = nullptr;  // the manager's list, under its lock
};

/// Every list of every thread. Any thread may call; usable at any moment of loading and unloading.
class ThreadMsgProfilerManager {
 public:
  static void entry(ThreadMsgProfiler* npProfiler);
  static void release(ThreadMsgProfiler* npProfiler);

  /// Measures the messages of a kind; getMaxMsgDataSize then tells the largest, 0 for a kind without messages.
  static void profiling(int nKind);
  static unsigned int getMaxMsgDataSize(int nKind);

  /// Both at once: what a thread of the kind is made with.
  static unsigned int profiledSize(int nKind);
};

/// A ThreadMsgProfiler that holds its sample messages, one object of each class, which tells its name by NAME:
/// `const ThreadMsgProfile<ListenerMsg, DispatchMsg> gProfile(THREAD_MSG_GNSS);` at file scope.
template <class... Msgs>
class ThreadMsgProfile {
 public:
  explicit ThreadMsgProfile(int nKind)
      : mSamples{{Msgs::NAME, &std::get<Msgs>(mMsgs)}...}, mProfiler(nKind, mSamples, sizeof...(Msgs)) {}

 private:
  std::tuple<Msgs...> mMsgs;
  ThreadMsgProfiler::Sample mSamples[sizeof...(Msgs)];
  ThreadMsgProfiler mProfiler;
};

}  // namespace nfw
