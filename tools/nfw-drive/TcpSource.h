#pragma once

#include <netdb.h>

#include "FdReader.h"
#include "GpsdFilter.h"

namespace drive {

/// A server of sentences: one that sends them plainly, or gpsd, which is asked for them.
class TcpSource : public SentenceSource {
 public:
  TcpSource(const std::string& nHost, const std::string& nPort, tool::Stopper& nStopper)
      : mHost(nHost), mPort(nPort), mStopper(nStopper), mReader(nStopper) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;

 private:
  bool connectTo(const addrinfo& nAddress, std::string* npReason);
  bool askForSentences(std::string* npReason);

  const std::string mHost;
  const std::string mPort;
  tool::Stopper& mStopper;
  FdReader mReader;
  GpsdFilter mFilter;
};

}  // namespace drive
