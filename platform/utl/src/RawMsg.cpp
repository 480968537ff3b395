#include "RawMsg.h"

namespace utl {

inline uint64_t RawMsg::bytesOf(ItemKind nKind, unsigned int nCount) {
  return nKind == WIDE_CHARS ? uint64_t{nCount} * sizeof(wchar_t) : nKind == POINTER ? sizeof(void*) : nCount;
}

bool RawMsg::take(ItemKind nKind, void* npData, unsigned int nCount) {
  const uint64_t lSize = bytesOf(nKind, nCount);
  if (lSize > static_cast<uint64_t>(mRead.mpEnd - mRead.mpNext)) return false;
  if (lSize != 0) std::memcpy(npData, mRead.mpNext, static_cast<size_t>(lSize));
  mRead.mpNext += lSize;
  return true;
}

bool MsgWriter::put(ItemKind nKind, const void* npData, unsigned int nCount) {
  const uint64_t lSize = RawMsg::bytesOf(nKind, nCount);
  const bool lFits = lSize <= static_cast<uint64_t>(mWrite.mpEnd - mWrite.mpNext);
  if (!lFits && (mpBuffer == nullptr || !moveTo(enlarge(size() + lSize)))) return false;
  if (lSize != 0) std::memcpy(mWrite.mpNext, npData, static_cast<size_t>(lSize));
  mWrite.mpNext += lSize;
  return true;
}

bool MsgWriter::moveTo(const MsgRoom& nRoom) {
  const unsigned int lSize = nRoom.mpData != nullptr ? size() : 0;
  if (lSize != 0) std::memcpy(nRoom.mpData, mpBuffer, lSize);
  mpBuffer = nRoom.mpData;
  mWrite = {mpBuffer + lSize, mpBuffer + nRoom.mSize};
  return mpBuffer != nullptr;
}

}  // namespace utl
