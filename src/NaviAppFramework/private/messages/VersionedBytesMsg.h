// A message that carries a record of the sensor log.
#pragma once

#include "BytesMsg.h"

namespace nfw {

/// Carries a record of up to N bytes and the version of its format.
template <unsigned int N>
class VersionedBytesMsg : public FieldMsg<VersionedBytesMsg<N>> {
 public:
  static constexpr const char* NAME = "VersionedBytesMsg";
  static constexpr unsigned int DATA_MAX = N;

  VersionedBytesMsg() = default;
  VersionedBytesMsg(int nMsgId, int nVersion, const void* npData, unsigned int nSize)
      : FieldMsg<VersionedBytesMsg<N>>(nMsgId), mVersion(nVersion), mSize(nSize) {
    if (nSize > 0) memcpy(mData, npData, nSize);
  }
  template <class Self, class Visit>
  static bool fields(Self& nSelf, Visit nVisit) {
    return nVisit(nSelf.mVersion) && nVisit(nSelf.mData) && nVisit(nSelf.mSize);
  }

  int32_t mVersion = 0;
  unsigned char mData[N] = {};
  uint32_t mSize = 0;
};

}  // namespace nfw
