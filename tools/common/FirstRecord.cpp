#include "FirstRecord.h"

#include <cerrno>

#include "Descriptor.h"
#include "RecordStream.h"

namespace tool {

FirstRecord firstRecordOf(const std::string& nPath) {
  FirstRecord lFirst;
  const Descriptor lFile(nPath);
  if (!lFile.isOpen()) {
    lFirst.mError = errno;
    return lFirst;
  }
  RecordStream lStream(lFile.get());
  Record lRecord;
  if (lStream.next(&lRecord)) {
    lFirst.mKind = lRecord.mKind;
    lFirst.mTick = lRecord.mTick;
  }
  lFirst.mError = lStream.getError();
  return lFirst;
}

}  // namespace tool
