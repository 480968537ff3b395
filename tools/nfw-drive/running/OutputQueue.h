#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>

#include "Output.h"

namespace drive {

/// Standard output with a thread and a queue of its own: who writes never waits for the reader. Lines that find no room
/// are left out and counted. Any thread may call.
class OutputQueue {
 public:
  using Clock = std::chrono::steady_clock;
  static constexpr size_t ROOM = 4 * 1024 * 1024;

  /// @param nFd not owned
  explicit OutputQueue(int nFd, size_t nRoom = ROOM) : mRoom(nRoom), mOutput(nFd) {}
  ~OutputQueue();
  OutputQueue(const OutputQueue&) = delete;
  OutputQueue& operator=(const OutputQueue&) = delete;

  /// False where the system gives no thread or no memory.
  bool start();

  /// Queues whole lines, all or none; they may wait for more. False when they found no room.
  bool write(std::string_view nLines);
  void flush();  ///< what is queued is not to wait for more

  /// Waits until at most half of the room is taken, for a caller that may be held up and must lose nothing.
  void awaitRoom();
  void letGo();  ///< ends such waits, for good

  bool isEmpty() const;  ///< nothing waits for the reader
  /// Waits until everything is written. False as soon as the reader has taken nothing for so long.
  bool drain(Clock::duration nPatience);
  /// Ends the thread, behind a last drain; what the reader does not take meanwhile is counted. False when the thread is
  /// left behind in its write: then this object must outlive it.
  bool finish(Clock::duration nPatience);

  uint64_t lost() const { return mLost; }  ///< lines
  tool::Output::State getState() const { return mState; }
  int getError() const { return mError; }  ///< errno of the failure
  bool isTerminal() const { return mOutput.isTerminal(); }

 private:
  void run();
  std::string_view awaitPiece();
  void release(size_t nSize);
  bool isDue() const { return mSize > 0 && (mIsFlushed || mSize >= PIECE_SIZE); }
  std::string_view topPiece() const;

  static constexpr size_t PIECE_SIZE = 16 * 1024;
  const size_t mRoom;
  tool::Output mOutput;  // on the thread
  std::atomic<tool::Output::State> mState{tool::Output::OPEN};
  std::atomic<int> mError{0};
  std::atomic<uint64_t> mLost{0};
  std::thread mThread;
  mutable std::mutex mMutex;
  std::condition_variable mWork;      // for the thread
  std::condition_variable mProgress;  // for those who wait for it
  std::unique_ptr<char[]> mpBytes;    // a ring; guarded by mMutex, as what follows
  size_t mStart = 0;
  size_t mSize = 0;
  uint64_t mWritten = 0;  // bytes so far
  bool mIsFlushed = false;
  bool mIsLetGo = false;
  bool mIsEnding = false;
  bool mIsOver = false;
};

}  // namespace drive
