// The keep-alive notices of the framework, as the unit's watchdog would see them.
#pragma once

#include <string>
#include <vector>

namespace nfwtest {

struct Notice {
  std::string mFile, mFunction;
  int mLine = 0, mPhase = 0;
};

/// While it lives, the notices of the calling thread are kept: this program's own keepAliveWatchdog goes before the
/// platform's. One at a time.
class Notices {
 public:
  Notices();
  ~Notices();
  Notices(const Notices&) = delete;
  Notices& operator=(const Notices&) = delete;

  std::vector<Notice> take();
};

}  // namespace nfwtest
