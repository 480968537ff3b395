#include "SentenceSource.h"

#include "FileSource.h"
#include "SerialSource.h"
#include "SimulatorSource.h"
#include "TcpSource.h"
#include "UdpSource.h"

namespace drive {

std::unique_ptr<SentenceSource> createSource(const SourceAddress& nAddress, const SimulatorOptions& nSimulator,
                                             tool::Stopper& nStopper) {
  switch (nAddress.mKind) {
    case SourceAddress::SIMULATOR:
      return std::make_unique<SimulatorSource>(nSimulator, nStopper);
    case SourceAddress::STDIN:
      return std::make_unique<FileSource>("/dev/stdin", nStopper);
    case SourceAddress::FILE:
      return std::make_unique<FileSource>(nAddress.mPath, nStopper);
    case SourceAddress::SERIAL:
      return std::make_unique<SerialSource>(nAddress.mPath, nAddress.mBaud, nStopper);
    case SourceAddress::TCP:
      return std::make_unique<TcpSource>(nAddress, nStopper);
    case SourceAddress::UDP:
      return std::make_unique<UdpSource>(nAddress.mWhere, nStopper);
  }
  return nullptr;
}

}  // namespace drive
