#include "LogFold.h"

#include "Format.h"

namespace drive {

void LogFold::tellRepeats() const {
  mKinds.eachRepeated([](int nType, int nLevel, const char* npText, uint64_t nCount) {
    syslogservice::writeToStandardError(nType, nLevel, fmt::format("{}: {} times", npText, nCount).c_str());
  });
}

}  // namespace drive
