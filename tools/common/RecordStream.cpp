#include "RecordStream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace tool {

namespace {

const size_t BUFFER_SIZE = 256 * 1024;
const size_t FIRST_BYTES = 48;  // enough for a log record to show itself
const size_t NOWHERE = std::string_view::npos;

}  // namespace

RecordStream::RecordStream(int nFd, RecordDamageListener* npListener)
    : mFd(nFd), mpListener(npListener), mBuffer(BUFFER_SIZE) {}

bool RecordStream::next(Record* npRecord) {
  if (mIsForeign) return false;
  if (mIsLive) mIsAtEnd = false;
  if (mpFormat == nullptr && !recognise()) return false;
  while (mError == 0) {
    const RecordVerdict lVerdict = judge();
    if (lVerdict.mResult == RecordVerdict::WHOLE) {
      npRecord->mBytes = bytes().substr(0, lVerdict.mSize);
      npRecord->mOffset = mOffset;
      npRecord->mWholeSize = static_cast<uint32_t>(lVerdict.mSize);
      mpFormat->decode(npRecord->mBytes, npRecord);
      drop(lVerdict.mSize);
      mIsBegun = lVerdict.mIsFollowed;
      return true;
    }
    const bool lIsEnd = lVerdict.mResult == RecordVerdict::SHORT && (mIsLive || bytes().empty());
    if (lIsEnd || mError != 0) return false;
    if (!skipDamage()) return false;
  }
  return false;
}

RecordVerdict RecordStream::judge() {
  RecordVerdict lVerdict = mpFormat->judge(view());
  while (lVerdict.mResult == RecordVerdict::SHORT && fill(lVerdict.mSize)) lVerdict = mpFormat->judge(view());
  if (lVerdict.mResult == RecordVerdict::SHORT) lVerdict = mpFormat->judge(view());  // it is all now
  return lVerdict;
}

// The first bytes tell; where they are damaged, what comes behind them.
bool RecordStream::recognise() {
  fill(FIRST_BYTES);
  if (bytes().empty() || (mIsLive && bytes().size() < FIRST_BYTES)) return false;
  const RecordKind lKinds[] = {LOG_RECORD, SENSOR_RECORD};
  for (const RecordKind lKind : lKinds) {
    take(lKind == LOG_RECORD ? logRecordFormat() : sensorRecordFormat(), lKind);
    if (judge().mResult == RecordVerdict::WHOLE) return true;
  }
  return recogniseLater();
}

bool RecordStream::recogniseLater() {
  fill(BUFFER_SIZE);
  take(logRecordFormat(), LOG_RECORD);
  if (mpFormat->judge(view()).mResult == RecordVerdict::SHORT || mpFormat->find(view()) != NOWHERE) return true;
  take(sensorRecordFormat(), SENSOR_RECORD);
  if (mpFormat->find(view()) != NOWHERE) return true;
  mpFormat = nullptr;
  mKind = UNKNOWN_RECORD;
  mIsForeign = true;
  return false;
}

void RecordStream::take(const RecordFormat& nFormat, RecordKind nKind) {
  mpFormat = &nFormat;
  mKind = nKind;
}

/// Drops what is before the next record, and tells of it. False when nothing could be dropped: a live file's last
/// bytes.
bool RecordStream::skipDamage() {
  RecordDamage lDamage;
  lDamage.mOffset = mOffset;
  mpFormat->explain(view(), &lDamage);
  bool lIsDone = false;
  while (!lIsDone && mError == 0) {
    fill(BUFFER_SIZE);
    const size_t lAt = mpFormat->find(view());
    const size_t lKept = view().mIsAll ? 0 : std::min(bytes().size(), mpFormat->overlap());
    drop(lAt != NOWHERE ? lAt : bytes().size() - lKept);
    lIsDone = lAt != NOWHERE || mIsAtEnd;
  }
  lDamage.mLength = mOffset - lDamage.mOffset;
  if (mpListener != nullptr && lDamage.mLength > 0) mpListener->onDamage(lDamage);
  return lDamage.mLength > 0;
}

/// False when so many bytes cannot be had.
bool RecordStream::fill(size_t nSize) {
  if (mEnd - mBegin < nSize) makeRoom(nSize);
  while (mEnd - mBegin < nSize) {
    if (mIsAtEnd || !readOnce()) return false;
  }
  return true;
}

void RecordStream::makeRoom(size_t nSize) {
  if (mBuffer.size() - mBegin >= nSize) return;
  memmove(mBuffer.data(), mBuffer.data() + mBegin, mEnd - mBegin);
  mEnd -= mBegin;
  mBegin = 0;
  if (mBuffer.size() < nSize) mBuffer.resize(nSize + BUFFER_SIZE);
}

bool RecordStream::readOnce() {
  ssize_t lSize = 0;
  do {
    lSize = ::read(mFd, mBuffer.data() + mEnd, mBuffer.size() - mEnd);
  } while (lSize < 0 && errno == EINTR);
  if (lSize < 0) mError = errno;
  mIsAtEnd = lSize <= 0;
  if (lSize > 0) mEnd += static_cast<size_t>(lSize);
  return lSize > 0;
}

void RecordStream::drop(size_t nSize) {
  mIsBegun = false;
  mBegin += nSize;
  mOffset += nSize;
}

}  // namespace tool
