#pragma once

#include <cstdint>

#include "FdReader.h"

namespace drive {

/// A socket of datagrams, which counts those that the system had no room for: it tells with the next one that it has.
class DatagramReader : public FdReader {
 public:
  using FdReader::FdReader;

  /// Of a socket that was just made. A system that does not count does without.
  void begin(int nFd);
  uint64_t lost() const { return mLost; }

 private:
  ssize_t take(char* npBuffer, size_t nSize) override;
  void note(uint32_t nDropped);

  uint64_t mLost = 0;
  uint32_t mDropped = 0;  // of the socket, so far
};

}  // namespace drive
