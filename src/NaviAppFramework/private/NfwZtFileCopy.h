// Copies a directory with everything below it, until cancelled.
#pragma once

#include <sys/stat.h>

#include <atomic>
#include <memory>
#include <string>

namespace nfw {

/// One thread executes; any thread may cancel. Links are not followed and, like devices and pipes, not copied. The
/// destination may lie inside the source: it is left out.
class ZtFileCopy {
 public:
  static constexpr int DONE = 0;
  static constexpr int FAILED = 1;  ///< something could not be copied; the rest was
  static constexpr int CANCELED = 2;

  ZtFileCopy();
  ZtFileCopy(const ZtFileCopy&) = delete;
  ZtFileCopy& operator=(const ZtFileCopy&) = delete;

  /// Creates the destination directory (its parent exists) and copies what the source directory holds into it, over
  /// what is there. The last argument has no meaning.
  int execute(const char* npSource, const char* npDestination, int nOption);

  /// Makes a running execute() return soon, and a later one at once, until clearCancel().
  void requestCancel() { mIsCanceled = true; }
  void clearCancel() { mIsCanceled = false; }

 private:
  int copyDirectory();
  int copyEntry();
  int copyFile();
  int copyBytes(int nSource, int nDestination);
  bool isDestination(const struct stat& nStat) const;

  std::atomic<bool> mIsCanceled{false};
  // Of the execution under way: the paths grow and shrink with the descent.
  std::string mSource;
  std::string mDestination;
  struct stat mTop = {};  // the destination directory
  std::unique_ptr<char[]> mpChunk;
};

}  // namespace nfw
