#pragma once

#include "FdReader.h"
#include "GpsdFilter.h"
#include "Resolved.h"

namespace drive {

/// A server of sentences: one that sends them plainly, or gpsd, which is asked for them. One that neither answers nor
/// sends for long counts as broken: a peer that is gone without a word leaves a connection that never ends.
class TcpSource : public SentenceSource {
 public:
  TcpSource(const SourceAddress& nAddress, tool::Stopper& nStopper)
      : mWhere(nAddress.mWhere),
        mIsGpsd(nAddress.mIsGpsd),
        mSilence(nAddress.mSilence),
        mStopper(nStopper),
        mReader(nStopper, nAddress.mSilence) {}

  OpenResult open(std::string* npReason) override;
  int read(char* npBuffer, size_t nSize, std::string* npReason) override;

 private:
  int awaitConnection(int nFd) const;
  bool connectTo(const addrinfo& nAddress, std::string* npReason);
  bool askForSentences(std::string* npReason);

  const HostPort mWhere;
  const bool mIsGpsd;
  const std::chrono::milliseconds mSilence;
  tool::Stopper& mStopper;
  FdReader mReader;
  GpsdFilter mFilter;
};

}  // namespace drive
