#include "RecordReader.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "LittleEndian.h"
#include "RecordScout.h"

namespace nfw {
namespace {

const unsigned int TEXT_SIZE = 160;

}  // namespace

RecordReader::RecordReader(const RecordFormat& nFormat, const Here& nHere)
    : mFormat(nFormat), mHere(nHere), mSync(nFormat.mpLockName) {}

bool RecordReader::open(int nLogTypeId, const char* npPath, RecordScout* npScout, unsigned int nFile) {
  const WatchedLock lLock(mSync, mHere.in());
  if (mpFile != nullptr) return false;
  std::unique_ptr<utl::File> lpFile(new utl::File(npPath));
  if (!lpFile->open(0, 0) || !mWindow.open(lpFile.get())) return false;
  mpFile = std::move(lpFile);
  mFileSize = 0;
  mAskBudget = AskBudget();
  mpScout = npScout;
  mScoutFile = nFile;
  mAskAt = npScout != nullptr ? 0 : RecordScout::NEVER;
  mLogTypeId = nLogTypeId;
  mHasFailed = false;
  mIsCanceled = false;
  return true;
}

bool RecordReader::seek(uint64_t nPosition) {
  const WatchedLock lLock(mSync, mHere.in());
  return mpFile != nullptr && mWindow.seek(nPosition);
}

void RecordReader::close() {
  const WatchedLock lLock(mSync, mHere.in());
  mpFile.reset();
  mHasFailed = false;
  mLogTypeId = -1;
}

bool RecordReader::isOpened() const {
  const WatchedLock lLock(mSync, mHere.in());
  return mpFile != nullptr && mpFile->isOpened();
}

bool RecordReader::getFirstLogTime(unsigned int* npTime) {
  static const char* const OPERATION = "getFirstLogTime";
  const WatchedLock lLock(mSync, mHere.in());
  if (mpFile == nullptr || mHasFailed) return false;
  unsigned long long lSize = 0;
  if (mpFile->getSize(&lSize)) mWindow.limit(lSize);
  uint64_t lReturnPosition = 0;
  if (!mWindow.getPosition(&lReturnPosition)) {
    fail(OPERATION, "Can't get return pos:");
    return true;
  }
  unsigned char lTime[4];
  if (!mWindow.seek(mFormat.mFirstTimeAt)) return fail(OPERATION, "Can't seek top time field:") == 0;
  const int lResult = mWindow.read(lTime, sizeof lTime);
  if (lResult != sizeof lTime) {
    return fail(OPERATION, "Can't read top time: Ret=%u", static_cast<unsigned int>(lResult)) == 0;
  }
  if (!mWindow.seek(lReturnPosition)) return fail(OPERATION, "Can't seek return pos:") == 0;
  if (npTime != nullptr) *npTime = getUint32(lTime);
  if (mFormat.mpOnFirstTime != nullptr) mFormat.mpOnFirstTime(mLogTypeId);
  return true;
}

/// The file may have grown since it was asked for its size. True also when it cannot be asked.
inline bool RecordReader::isAtEnd(uint64_t nPosition) {
  return nPosition >= mFileSize && (!getSize() || nPosition >= mFileSize);
}

// Most headers lie in the window whole. The others are read step by step, each with its own line when it fails.
inline bool RecordReader::readHeader(RecordHeader* npHeader) {
  const unsigned int lSize = headerSize();
  if (const unsigned char* const lpBytes = mWindow.view(lSize)) {
    mFormat.mpDecode(lpBytes + mFormat.mTextSize, npHeader);
    mWindow.skip(lSize);
    return true;
  }
  unsigned char lFields[RecordFormat::MAX_FIELDS_SIZE];
  if (!readFields(*npHeader, lFields)) return false;
  mFormat.mpDecode(lFields, npHeader);
  return true;
}

// Most records lie in the window whole, and are taken in one step.
inline int RecordReader::readData(const RecordHeader& nHeader, void* npBuffer, unsigned int nBufferSize) {
  if (nHeader.mSize > nBufferSize) {
    return failAt(nHeader.mPosition, "Can't read data: Buffer is not enough: DataSize=%u Byte BufferSize=%u Byte",
                  nHeader.mSize, nBufferSize);
  }
  const uint64_t lSize = uint64_t{nHeader.mSize} + mFormat.mBytesAfter;
  const unsigned char* const lpBytes = mWindow.view(lSize);
  if (lpBytes == nullptr) return readDataOn(nHeader, npBuffer);
  memcpy(npBuffer, lpBytes, nHeader.mSize);
  mWindow.skip(lSize);
  return static_cast<int>(nHeader.mSize);
}

int RecordReader::nextRecord(RecordHeader* npHeader, void* npBuffer, unsigned int nBufferSize) {
  const WatchedLock lLock(mSync, mHere.in());
  return take(npHeader, npBuffer, nBufferSize);
}

int RecordReader::take(RecordHeader* npHeader, void* npBuffer, unsigned int nBufferSize) {
  if (mpFile == nullptr || mHasFailed) return ERROR;
  if (isCanceled()) return CANCELED;
  if (mAskBudget.take() && !getSize()) return ERROR;
  while (!isCanceled()) {
    if (mWindow.view(headerSize()) == nullptr && !getSize()) return ERROR;
    if (!mWindow.getPosition(&npHeader->mPosition)) return fail("next", "Can't get log pos:");
    if (isAtEnd(npHeader->mPosition)) return mHasFailed ? ERROR : END_OF_FILE;
    if (npHeader->mPosition >= mAskAt && passOver(npHeader->mPosition)) continue;
    if (!readHeader(npHeader)) return ERROR;
    if (npHeader->mId == mLogTypeId) return readData(*npHeader, npBuffer, nBufferSize);
    if (!mWindow.skip(uint64_t{npHeader->mSize} + mFormat.mBytesAfter)) {
      return failAt(npHeader->mPosition, "Can't seek next log record:");
    }
  }
  return CANCELED;
}

/// True when it has moved on.
bool RecordReader::passOver(uint64_t nPosition) {
  const RecordScout::Hint lHint = mpScout->ask(mScoutFile, nPosition, mLogTypeId, mIsCanceled);
  mAskAt = lHint.mAskAt;
  return lHint.mNext > nPosition && mWindow.seek(lHint.mNext);
}

bool RecordReader::getSize() {
  unsigned long long lSize = 0;
  if (!mpFile->getSize(&lSize)) {
    fail("next", "Can't get file size:");
    return false;
  }
  mFileSize = lSize;
  if (mWindow.limit(lSize)) return true;
  fail("next", "Can't get log pos:");
  return false;
}

bool RecordReader::readFields(const RecordHeader& nHeader, unsigned char* npFields) {
  if (mFormat.mTextSize > 0 && !mWindow.skip(mFormat.mTextSize)) {
    failAt(nHeader.mPosition, "Can't seek log type Id field:");
    return false;
  }
  for (const RecordFormat::Field& lField : mFormat.mFields) {
    const int lResult = mWindow.read(npFields, lField.mSize);
    if (lResult != static_cast<int>(lField.mSize)) {
      failAt(nHeader.mPosition, "Can't read %s: Ret=%u", lField.mpWord, static_cast<unsigned int>(lResult));
      return false;
    }
    npFields += lField.mSize;
  }
  return true;
}

int RecordReader::readDataOn(const RecordHeader& nHeader, void* npBuffer) {
  const int lResult = mWindow.read(npBuffer, nHeader.mSize);
  if (lResult < 0 || static_cast<uint32_t>(lResult) != nHeader.mSize) {
    return failAt(nHeader.mPosition, "Can't read data: Ret=%u", static_cast<unsigned int>(lResult));
  }
  if (mFormat.mBytesAfter > 0 && !mWindow.skip(mFormat.mBytesAfter)) {
    return failAt(nHeader.mPosition, "Can't skip postfix field:");
  }
  return lResult;
}

int RecordReader::failAt(uint64_t nPosition, const char* npFormat, ...) {
  char lText[TEXT_SIZE];
  va_list lArguments;
  va_start(lArguments, npFormat);
  vsnprintf(lText, sizeof lText, npFormat, lArguments);
  va_end(lArguments);
  mFormat.mpLogAt(lText, mLogTypeId, nPosition);
  mHasFailed = true;
  return ERROR;
}

int RecordReader::fail(const char* npOperation, const char* npFormat, ...) {
  char lText[TEXT_SIZE];
  va_list lArguments;
  va_start(lArguments, npFormat);
  vsnprintf(lText, sizeof lText, npFormat, lArguments);
  va_end(lArguments);
  mFormat.mpLog(npOperation, lText, mLogTypeId);
  mHasFailed = true;
  return ERROR;
}

}  // namespace nfw
