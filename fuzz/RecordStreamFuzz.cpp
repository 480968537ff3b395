// Any bytes as a recording: every byte is part of one whole record or of one damaged place, in their order.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

#include "RecordStream.h"

namespace {

void require(bool nHolds) {
  if (!nHolds) std::abort();
}

class Damages : public tool::RecordDamageListener {
 public:
  void onDamage(const tool::RecordDamage& nDamage) override {
    require(nDamage.mOffset == mEnd && nDamage.mLength > 0);
    mEnd += nDamage.mLength;
  }
  uint64_t mEnd = 0;  // of what is accounted for
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* npData, size_t nSize) {
  static const int FD = ::memfd_create("recording", 0);
  require(::ftruncate(FD, 0) == 0 && ::pwrite(FD, npData, nSize, 0) == static_cast<ssize_t>(nSize));
  require(::lseek(FD, 0, SEEK_SET) == 0);
  Damages lDamages;
  tool::RecordStream lStream(FD, &lDamages);
  for (tool::Record lRecord; lStream.next(&lRecord);) {
    require(lRecord.mOffset == lDamages.mEnd && lRecord.mWholeSize > lRecord.mData.size());
    lDamages.mEnd += lRecord.mWholeSize;
  }
  require(lStream.getError() == 0 && (lStream.isForeign() || lDamages.mEnd == nSize));
  return 0;
}
