// Files that hold bytes which may not be on the medium yet.
#pragma once

#include <array>
#include <memory>

#include "utl/File.h"

namespace nfw {

/// Collected under the owner's lock, synced without it: a medium may take its time. One that collects more files than
/// there is room for between two syncs has the whole file system of the last one synced.
class UnsyncedFiles {
 public:
  void add(std::shared_ptr<utl::File> npFile) {
    mIsOverflown = mIsOverflown || mNum == ROOM;
    mpFiles[mNum == ROOM ? ROOM - 1 : mNum++] = std::move(npFile);
  }

  bool isEmpty() const { return mNum == 0; }

  /// True when all of them are on the medium.
  bool sync() const {
    if (mIsOverflown) return mpFiles[ROOM - 1]->syncFileSystem();
    bool lIsDone = true;
    for (unsigned int i = 0; i < mNum; ++i) lIsDone = mpFiles[i]->sync() && lIsDone;
    return lIsDone;
  }

 private:
  static constexpr unsigned int ROOM = 8;
  std::array<std::shared_ptr<utl::File>, ROOM> mpFiles;
  unsigned int mNum = 0;
  bool mIsOverflown = false;
};

}  // namespace nfw
