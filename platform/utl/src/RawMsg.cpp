#include "RawMsg.h"

namespace utl {

namespace {

/// One field's bytes; numbers are copied without a call.
void copyItem(void* npTo, const void* npFrom, unsigned int nSize) {
  switch (nSize) {
    case 1:
      std::memcpy(npTo, npFrom, 1);
      break;
    case 4:
      std::memcpy(npTo, npFrom, 4);
      break;
    case 8:
      std::memcpy(npTo, npFrom, 8);
      break;
    default:
      if (nSize != 0) std::memcpy(npTo, npFrom, nSize);
  }
}

}  // namespace

inline uint64_t RawMsg::bytesOf(ItemKind nKind, unsigned int nCount) {
  return nKind == WIDE_CHARS ? uint64_t{nCount} * sizeof(wchar_t) : nKind == POINTER ? sizeof(void*) : nCount;
}

bool RawMsg::take(ItemKind nKind, void* npData, unsigned int nCount) {
  const uint64_t lSize = bytesOf(nKind, nCount);
  if (lSize > mSize - mRead) return false;
  copyItem(npData, mpData + mRead, static_cast<unsigned int>(lSize));
  mRead += static_cast<unsigned int>(lSize);
  return true;
}

bool MsgWriter::put(ItemKind nKind, const void* npData, unsigned int nCount) {
  const uint64_t lSize = RawMsg::bytesOf(nKind, nCount);
  if (lSize > mRoom - mSize && (mpBuffer == nullptr || !moveTo(enlarge(mSize + lSize)))) return false;
  copyItem(mpBuffer + mSize, npData, static_cast<unsigned int>(lSize));
  mSize += static_cast<unsigned int>(lSize);
  return true;
}

bool MsgWriter::moveTo(const MsgRoom& nRoom) {
  if (nRoom.mpData != nullptr && mSize != 0) std::memcpy(nRoom.mpData, mpBuffer, mSize);
  if (nRoom.mpData == nullptr) mSize = 0;
  mpBuffer = nRoom.mpData;
  mRoom = nRoom.mSize;
  return mpBuffer != nullptr;
}

}  // namespace utl
