// A mount namespace of the test's own: what is mounted there nobody else sees.
#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>

namespace nfwtest {

/// Empty when this process may mount from now on, otherwise why it may not.
inline std::string enterMountNamespace() {
  const unsigned int lUser = geteuid();
  if (unshare(lUser == 0 ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0) return strerror(errno);
  if (lUser != 0) std::ofstream("/proc/self/uid_map") << "0 " << lUser << " 1";
  return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 ? "" : strerror(errno);
}

}  // namespace nfwtest
