#include "RecordScout.h"

namespace nfw {
namespace {

uint64_t typeBit(int nLogTypeId) { return uint64_t{1} << (static_cast<unsigned int>(nLogTypeId) % 64); }

}  // namespace

bool RecordScout::Piece::has(int nLogTypeId) const { return (mTypes & typeBit(nLogTypeId)) != 0; }

bool RecordScout::Piece::endsBefore(unsigned int nFile, uint64_t nPosition) const {
  return mFile != nFile ? mFile < nFile : mEnd <= nPosition;
}

RecordScout::RecordScout(const RecordFormat& nFormat, const Here& nHere, unsigned int nPieceSize)
    : mFormat(nFormat), mHere(nHere), mLeastPieceSize(nPieceSize) {}

void RecordScout::start(unsigned int nFile, const char* npPath, uint64_t nPosition) {
  const WatchedLock lLock(mSync, mHere.in());
  mPieceNum = 0;
  mPieceSize = mLeastPieceSize;
  mFirstFile = nFile;
  mBegin = nPosition;
  open(nFile, npPath, nPosition);
}

void RecordScout::enter(unsigned int nFile, const char* npPath) {
  const WatchedLock lLock(mSync, mHere.in());
  if (mpFile != nullptr && nFile == mFile + 1) open(nFile, npPath, 0);
}

void RecordScout::open(unsigned int nFile, const char* npPath, uint64_t nPosition) {
  mpFile = std::make_unique<utl::File>(npPath);
  mFile = nFile;
  mReached = nPosition;
  if (!mpFile->open(0, 0) || !mWindow.open(mpFile.get())) mpFile.reset();
}

RecordScout::Hint RecordScout::ask(unsigned int nFile, uint64_t nFrom, int nLogTypeId,
                                   const std::atomic<bool>& nIsCanceled) {
  const WatchedLock lLock(mSync, mHere.in());
  if (!isKnown(nFile, nFrom) || (nFile == mFile && hasShrunk())) return {nFrom, NEVER};
  uint64_t lNext = nFrom;
  for (unsigned int i = pieceAt(nFile, nFrom); i < mPieceNum && mPieces[i].mFile == nFile; ++i) {
    if (mPieces[i].has(nLogTypeId)) return {lNext, mPieces[i].mEnd};
    lNext = mPieces[i].mEnd;
  }
  if (nFile != mFile) return {lNext, NEVER};
  if (!look(nIsCanceled)) return {lNext, lNext + 1};
  return {mPieces[mPieceNum - 1].has(nLogTypeId) ? lNext : mReached, mReached};
}

/// Behind the beginning, and not beyond where it stands.
bool RecordScout::isKnown(unsigned int nFile, uint64_t nFrom) const {
  if (mpFile == nullptr || nFile < mFirstFile || nFile > mFile) return false;
  return (nFile != mFirstFile || nFrom >= mBegin) && (nFile != mFile || nFrom <= mReached);
}

bool RecordScout::hasShrunk() {
  unsigned long long lSize = 0;
  const bool lHasSize = mpFile->getSize(&lSize);
  mFileSize = lSize;
  if (lHasSize && lSize >= mReached && mWindow.limit(lSize)) return false;
  mpFile.reset();
  return true;
}

/// The one that the place lies in, or the number of pieces.
unsigned int RecordScout::pieceAt(unsigned int nFile, uint64_t nPosition) const {
  unsigned int lAt = 0;
  while (lAt < mPieceNum && mPieces[lAt].endsBefore(nFile, nPosition)) ++lAt;
  return lAt;
}

/// One more piece. False at the end of the file, or where it goes no further.
bool RecordScout::look(const std::atomic<bool>& nIsCanceled) {
  if (mPieceNum == MAX_PIECES) joinPieces();
  if (mPieceNum == MAX_PIECES || !mWindow.seek(mReached)) return false;
  const uint64_t lBegin = mReached;
  uint64_t lTypes = 0;
  while (mReached - lBegin < mPieceSize && !nIsCanceled.load(std::memory_order_relaxed) && step(&lTypes)) {
  }
  if (mReached == lBegin) return false;
  mPieces[mPieceNum++] = {mFile, mReached, lTypes};
  return true;
}

/// Over the next record, when it is whole.
bool RecordScout::step(uint64_t* npTypes) {
  unsigned char lCopy[RecordFormat::MAX_HEADER_SIZE];
  const unsigned int lSize = mFormat.headerSize();
  const unsigned char* lpBytes = mWindow.view(lSize);
  if (lpBytes != nullptr) {
    mWindow.skip(lSize);
  } else {
    if (mWindow.read(lCopy, lSize) != static_cast<int>(lSize)) return false;
    lpBytes = lCopy;
  }
  RecordHeader lHeader;
  mFormat.mpDecode(lpBytes + mFormat.mTextSize, &lHeader);
  const uint64_t lRest = uint64_t{lHeader.mSize} + mFormat.mBytesAfter;
  if (mReached + lSize + lRest > mFileSize || !mWindow.skip(lRest)) return false;
  mReached += lSize + lRest;
  *npTypes |= typeBit(lHeader.mId);
  return true;
}

/// Two neighbours of one file each; the pieces to come are as long.
void RecordScout::joinPieces() {
  unsigned int lNum = 0;
  for (unsigned int i = 0; i < mPieceNum; ++i, ++lNum) {
    Piece lPiece = mPieces[i];
    if (i + 1 < mPieceNum && mPieces[i + 1].mFile == lPiece.mFile) {
      lPiece.mTypes |= mPieces[++i].mTypes;
      lPiece.mEnd = mPieces[i].mEnd;
    }
    mPieces[lNum] = lPiece;
  }
  mPieceNum = lNum;
  mPieceSize *= 2;
}

}  // namespace nfw
