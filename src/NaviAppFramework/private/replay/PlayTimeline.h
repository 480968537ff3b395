// Where in a recording of several files a moment lies.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "LogFilePath.h"
#include "RecordSearch.h"

namespace nfw {

/// The files of a playback in their order, and the stretches of them in which the recorded times go on. A moment is
/// told in milliseconds from the first record of the first file. Between two stretches lies what the times tell where
/// they go on; where they begin anew (another start of the system), what the dates of the records tell; a second where
/// there are none, or where they go back.
///
/// Built on any thread, then only read. A time that goes back by less than a second is disorder, not a new stretch; a
/// file is looked at in some places, so that stretches much shorter than others of the same file may go unseen.
class PlayTimeline {
 public:
  struct Stretch {
    unsigned int mFile = 0;
    uint64_t mBegin = 0;      // of its first record, in the file
    uint32_t mFirstTime = 0;  // that record's
    uint32_t mOffset = 0;     // where that record lies in the playback
    uint64_t mEnd = 0;        // behind its last record
    uint32_t mLastTime = 0;
  };
  struct Place {
    unsigned int mFile = 0;
    uint64_t mPosition = 0;
  };

  /// False when a file cannot be read or has no record; `npBadPath` then points at its path.
  bool build(const RecordFormat& nFormat, const char* const* nppPaths, unsigned int nNum, const char** nppBadPath);

  unsigned int fileNum() const { return static_cast<unsigned int>(mPaths.size()); }
  const char* path(unsigned int nFile) const { return mPaths[nFile].data(); }
  uint32_t length() const;  ///< where the last record lies
  /// A second before the moment at most and never behind it: records of several threads stand a little out of order.
  Place find(const RecordFormat& nFormat, uint32_t nOffset) const;
  const Stretch& stretchAt(const Place& nPlace) const;

 private:
  bool addFile(const RecordFormat& nFormat, unsigned int nFile);
  void addStretches(RecordSearch& nSearch, unsigned int nFile, const RecordSearch::Found& nLast);
  void beginStretch(unsigned int nFile, const RecordSearch::Found& nFirst);
  void noteLast(const RecordSearch::Found& nLast);

  std::vector<std::array<char, LOG_PATH_SIZE>> mPaths;
  std::vector<Stretch> mStretches;  // at least one a file
  RecordSearch::Found mLast;        // of the stretch under way
};

}  // namespace nfw
