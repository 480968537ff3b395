// A message that carries bytes.
#pragma once

#include <cstring>

#include "FieldMsg.h"

namespace nfw {

/// Carries up to N bytes, the unused ones zero, and their count.
template <unsigned int N>
class BytesMsg : public FieldMsg<BytesMsg<N>> {
 public:
  static constexpr const char* NAME = "BytesMsg";
  static constexpr unsigned int DATA_MAX = N;

  BytesMsg() = default;
  /// `nSize` is at most N; null data is allowed for 0.
  BytesMsg(int nMsgId, const void* npData, unsigned int nSize) : FieldMsg<BytesMsg<N>>(nMsgId), mSize(nSize) {
    if (nSize > 0) memcpy(mData, npData, nSize);
  }
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mData) && nVisit(nSelf.mSize);
  }

  unsigned char mData[N] = {};
  uint32_t mSize = 0;
};

}  // namespace nfw
