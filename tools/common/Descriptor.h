#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <string>

namespace tool {

/// Owns a descriptor. As with open(2), a negative one is none and errno tells why.
class Descriptor {
 public:
  explicit Descriptor(int nFd = -1) : mFd(nFd) {}
  /// Of a file to read.
  explicit Descriptor(const std::string& nPath, int nFlags = 0)
      : mFd(::open(nPath.c_str(), O_RDONLY | O_CLOEXEC | nFlags)) {}
  ~Descriptor() { reset(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  bool isOpen() const { return mFd >= 0; }
  int get() const { return mFd; }
  void reset(int nFd = -1) {
    if (mFd >= 0) ::close(mFd);
    mFd = nFd;
  }

 private:
  int mFd;
};

}  // namespace tool
