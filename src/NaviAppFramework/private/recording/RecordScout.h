// Finds out once, for all readers of a playback, what they can pass over.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "NfwThreadSafety.h"
#include "ReadWindow.h"
#include "RecordReader.h"
#include "Watched.h"
#include "ZTSync.h"
#include "utl/File.h"

namespace nfw {

/// Walks the files of a playback a piece at a time, on the thread of whoever comes first to where it has not been, and
/// notes which log types stand in the piece. So others go past in no time what has nothing for them.
///
/// It only tells what to pass over: every record of its type, and whatever is odd, a reader meets itself, with its own
/// results and lines. Nothing is told of a file that has shrunk. Any thread; asking takes no longer than a piece or two
/// are read, and nothing from the heap.
class RecordScout {
 public:
  static constexpr uint64_t NEVER = UINT64_MAX;

  struct Hint {
    uint64_t mNext;   // none of the type between the place asked about and here
    uint64_t mAskAt;  // to be asked again from here on; at once where it is the same
  };

  /// A piece is longer than `nPieceSize` bytes where the files are too long for the room that there is.
  RecordScout(const RecordFormat& nFormat, const Here& nHere, unsigned int nPieceSize = 64 * 1024);

  /// Forgets everything, and begins at a record. Files are numbered in their order.
  void start(unsigned int nFile, const char* npPath, uint64_t nPosition);
  /// A reader has gone on to this file. Only the first to come to the next one takes the scout there.
  void enter(unsigned int nFile, const char* npPath);
  /// `nFrom`: where a record begins. A cancel ends it before the next record.
  Hint ask(unsigned int nFile, uint64_t nFrom, int nLogTypeId, const std::atomic<bool>& nIsCanceled);

 private:
  static constexpr unsigned int MAX_PIECES = 1024;

  struct Piece {
    unsigned int mFile = 0;
    uint64_t mEnd = 0;
    uint64_t mTypes = 0;  // a bit each; some share one

    bool has(int nLogTypeId) const;
    bool endsBefore(unsigned int nFile, uint64_t nPosition) const;
  };

  [[gnu::noinline]] void open(unsigned int nFile, const char* npPath, uint64_t nPosition) NFW_REQUIRES(mSync);
  bool isKnown(unsigned int nFile, uint64_t nFrom) const NFW_REQUIRES(mSync);
  bool hasShrunk() NFW_REQUIRES(mSync);
  unsigned int pieceAt(unsigned int nFile, uint64_t nPosition) const NFW_REQUIRES(mSync);
  bool look(const std::atomic<bool>& nIsCanceled) NFW_REQUIRES(mSync);
  bool step(uint64_t* npTypes) NFW_REQUIRES(mSync);
  void joinPieces() NFW_REQUIRES(mSync);

  const RecordFormat& mFormat;
  const Here mHere;
  const unsigned int mLeastPieceSize;
  ZTSync mSync{"nfw::RecordScout"};
  std::unique_ptr<utl::File> mpFile NFW_GUARDED_BY(mSync);  // null: it knows nothing
  ReadWindow mWindow NFW_GUARDED_BY(mSync);
  std::array<Piece, MAX_PIECES> mPieces NFW_GUARDED_BY(mSync);  // in their order, without a gap in a file
  unsigned int mPieceNum NFW_GUARDED_BY(mSync) = 0;
  uint64_t mPieceSize NFW_GUARDED_BY(mSync) = 0;
  unsigned int mFirstFile NFW_GUARDED_BY(mSync) = 0;
  uint64_t mBegin NFW_GUARDED_BY(mSync) = 0;  // in the first file
  unsigned int mFile NFW_GUARDED_BY(mSync) = 0;
  uint64_t mReached NFW_GUARDED_BY(mSync) = 0;   // where it stands in its file, at a record
  uint64_t mFileSize NFW_GUARDED_BY(mSync) = 0;  // when last asked
};

}  // namespace nfw
