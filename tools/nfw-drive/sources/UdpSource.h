#pragma once

#include "DatagramReader.h"
#include "HostPort.h"

namespace drive {

/// Datagrams of sentences that come to an address of this machine, or to a multicast group. Nobody has to send any, so
/// that silence is no break.
class UdpSource : public SentenceSource {
 public:
  UdpSource(const HostPort& nWhere, tool::Stopper& nStopper) : mWhere(nWhere), mReader(nStopper) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;
  uint64_t lost() const override { return mReader.lost(); }

 private:
  const HostPort mWhere;
  DatagramReader mReader;
};

}  // namespace drive
