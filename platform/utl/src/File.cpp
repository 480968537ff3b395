#include "utl/File.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>

#include "FileState.h"
#include "SeamState.h"

namespace utl {

namespace {

// A line on its way into the caller's buffer: what does not fit is counted and dropped.
class LineBuffer {
 public:
  LineBuffer(char* npBuffer, unsigned int nSize) : mpBuffer(npBuffer), mRoom(nSize - 1) { mpBuffer[0] = '\0'; }

  void add(const char* npBytes, size_t nCount) {
    if (nCount == 0) return;
    const unsigned int lStored = stored();
    memcpy(mpBuffer + lStored, npBytes, std::min<size_t>(nCount, mRoom - lStored));
    mLength += nCount;
    mLast = npBytes[nCount - 1];
  }
  bool isEmpty() const { return mLength == 0; }

  int finish(bool nHasLineEnd) {
    if (nHasLineEnd && mLength > 0 && mLast == '\r') --mLength;
    mpBuffer[stored()] = '\0';
    return static_cast<int>(stored());
  }
  int fail(int nResult) {
    mpBuffer[0] = '\0';
    return nResult;
  }

 private:
  unsigned int stored() const { return static_cast<unsigned int>(std::min<unsigned long long>(mLength, mRoom)); }

  char* mpBuffer;
  unsigned int mRoom;
  unsigned long long mLength = 0;
  char mLast = '\0';
};

}  // namespace

File::File(const char* npPath) : mpState(new State(npPath)) {}
File::~File() = default;

const char* File::getPath() const { return mpState->mPath.c_str(); }

bool File::exists(const char* npPath) {
  struct stat lStat;
  return npPath != nullptr && ::stat(npPath, &lStat) == 0 && !S_ISDIR(lStat.st_mode);
}
bool File::exists() const { return exists(getPath()); }

bool File::open(int nMode, int nCreate) {
  if (isOpened() || seams::fails(seams::FILE_OPEN)) return false;
  if (nMode == 0 && nCreate == 0) return mpState->openToRead();
  return nMode == 2 && nCreate == 1 && mpState->openToWrite();
}

void File::close() { mpState->close(); }
bool File::isOpened() const { return mpState->mFile >= 0; }

// On an error the position stays where it was.
int File::read(void* npBuffer, unsigned int nSize) {
  if (!mpState->isReading() || (npBuffer == nullptr && nSize > 0) || nSize > INT_MAX) return RESULT_ERROR;
  if (seams::fails(seams::FILE_READ)) return RESULT_ERROR;
  const unsigned long long lStart = mpState->mPosition;
  unsigned int lDone = 0;
  while (lDone < nSize) {
    const int lCount = mpState->take(static_cast<char*>(npBuffer) + lDone, nSize - lDone);
    if (lCount < 0) mpState->mPosition = lStart;
    if (lCount < 0) return RESULT_ERROR;
    if (lCount == 0) break;
    lDone += static_cast<unsigned int>(lCount);
  }
  return static_cast<int>(lDone);
}

int File::write(const void* npBuffer, unsigned int nSize) {
  if (!mpState->isWriting() || (npBuffer == nullptr && nSize > 0) || nSize > INT_MAX) return RESULT_ERROR;
  if (seams::fails(seams::FILE_WRITE)) return RESULT_ERROR;
  iovec lPart = {const_cast<void*>(npBuffer), nSize};
  return mpState->writeAll(&lPart, 1) ? static_cast<int>(nSize) : RESULT_ERROR;
}

// Nothing is held back: all there is to tell is whether a write has failed since the file was opened.
bool File::flush() { return isOpened() && !mpState->mHasFailed && !seams::fails(seams::FILE_FLUSH); }

bool File::sync() { return isOpened() && !seams::fails(seams::FILE_SYNC) && mpState->sync(); }
bool File::syncFileSystem() { return isOpened() && !seams::fails(seams::FILE_SYNC) && ::syncfs(mpState->mFile) == 0; }

bool File::truncate(unsigned long long nSize) { return mpState->isWriting() && mpState->cutAt(nSize); }

bool File::getPosition(unsigned long long* npPosition) {
  if (!isOpened() || npPosition == nullptr || seams::fails(seams::FILE_POSITION)) return false;
  *npPosition = mpState->mPosition;
  return true;
}

bool File::seek(long long nOffset, int nOrigin) {
  if (!isOpened() || nOrigin < ORIGIN_BEGIN || nOrigin > ORIGIN_END || seams::fails(seams::FILE_SEEK)) return false;
  unsigned long long lBase = nOrigin == ORIGIN_CURRENT ? mpState->mPosition : 0;
  if (nOrigin == ORIGIN_END && !mpState->kernelSize(&lBase)) return false;
  long long lTarget = 0;
  return !__builtin_add_overflow(static_cast<long long>(lBase), nOffset, &lTarget) && mpState->moveTo(lTarget);
}

bool File::getSize(unsigned long long* npSize) {
  return npSize != nullptr && !seams::fails(seams::FILE_SIZE) && mpState->kernelSize(npSize);
}

bool File::hasName() const { return mpState->hasName(); }

int File::readLine(char* npBuffer, unsigned int nSize) {
  if (npBuffer == nullptr || nSize == 0 || nSize > INT_MAX) return RESULT_ERROR;
  LineBuffer lLine(npBuffer, nSize);
  if (!mpState->isReading() || seams::fails(seams::FILE_READ)) return RESULT_ERROR;
  const unsigned long long lStart = mpState->mPosition;
  for (;;) {
    const char* lpBytes = nullptr;
    const int lSeen = mpState->view(&lpBytes);
    if (lSeen < 0) mpState->mPosition = lStart;
    if (lSeen < 0) return lLine.fail(RESULT_ERROR);
    if (lSeen == 0) return lLine.isEmpty() ? RESULT_EOF : lLine.finish(false);
    const char* const lpEnd = static_cast<const char*>(memchr(lpBytes, '\n', static_cast<size_t>(lSeen)));
    const size_t lCount = static_cast<size_t>(lpEnd != nullptr ? lpEnd - lpBytes : lSeen);
    lLine.add(lpBytes, lCount);
    mpState->mPosition += lCount + (lpEnd != nullptr ? 1 : 0);
    if (lpEnd != nullptr) return lLine.finish(true);
  }
}

bool File::writeLine(const char* npLine) {
  if (!mpState->isWriting() || npLine == nullptr || seams::fails(seams::FILE_WRITE)) return false;
  char lEnd = '\n';
  iovec lParts[] = {{const_cast<char*>(npLine), strlen(npLine)}, {&lEnd, 1}};
  return mpState->writeAll(lParts, 2);
}

}  // namespace utl
