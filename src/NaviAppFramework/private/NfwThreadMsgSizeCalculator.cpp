#include "NfwThreadMsgSizeCalculator.h"

namespace nfw {

bool ThreadMsgSizeCalculator::beginInput() {
  mIsCounting = false;
  return true;
}

bool ThreadMsgSizeCalculator::beginOutput() {
  mSize = 0;
  mIsCounting = true;
  return true;
}

bool ThreadMsgSizeCalculator::put(ItemKind /*nKind*/, const void* /*npData*/, unsigned int /*nCount*/) { return false; }

bool ThreadMsgSizeCalculator::take(ItemKind nKind, void* /*npData*/, unsigned int nCount) {
  if (!mIsCounting) return false;
  const unsigned int lUnit = nKind == POINTER || nKind == WIDE_CHARS ? 4 : 1;
  mSize += nCount * lUnit;
  return true;
}

}  // namespace nfw
