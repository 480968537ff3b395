#pragma once

#include "FdReader.h"
#include "HostPort.h"

namespace drive {

/// Datagrams of sentences that come to an address of this machine, or to a multicast group. Nobody has to send any, so
/// that silence is no break.
class UdpSource : public SentenceSource {
 public:
  UdpSource(const HostPort& nWhere, tool::Stopper& nStopper) : mWhere(nWhere), mReader(nStopper) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;

 private:
  const HostPort mWhere;
  FdReader mReader;
};

}  // namespace drive
