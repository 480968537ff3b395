#pragma once

#include <string>

namespace drive {

/// What was marked as kept.
struct KeptCounts {
  unsigned int mNum = 0;  ///< files that were not kept before
  std::string mFault;     ///< the first file that could not be, and why; empty: all are
};

/// Gives those files of a recording that were written to within the last seconds a second name in the directory "kept"
/// below theirs, where no limit deletes them; where the medium has no second names they are moved there. What is still
/// written to them is kept with them. All is on the medium when this returns.
/// @param nName the prefix of the recording's files, or the name of its one file
KeptCounts keepFiles(const std::string& nDirectory, const std::string& nName, unsigned int nBeforeSec);

}  // namespace drive
