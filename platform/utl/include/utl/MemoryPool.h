/// @file
/// Blocks of one size.
#pragma once

#include <memory>

namespace utl {

/// A fixed number of blocks of one size, aligned for a pointer. Any thread may call.
class MemoryPool {
 public:
  /// A block size of 0 counts as 1. Without memory the pool has no blocks.
  MemoryPool(const char* npName, unsigned int nBlockSize, unsigned int nBlockNum);
  ~MemoryPool();
  MemoryPool(const MemoryPool&) = delete;
  MemoryPool& operator=(const MemoryPool&) = delete;

  void* alloc();             ///< null when every block is out
  void free(void* npBlock);  ///< null is allowed

 private:
  struct State;
  std::unique_ptr<State> mpState;
};

}  // namespace utl
