#include "SentenceSource.h"

#include "FileSource.h"
#include "SerialSource.h"
#include "SimulatorSource.h"
#include "TcpSource.h"

namespace drive {

std::unique_ptr<SentenceSource> createSource(const SourceSpec& nSpec, const SimulatorOptions& nSimulator,
                                             tool::Stopper& nStopper) {
  switch (nSpec.mKind) {
    case SourceSpec::SIMULATOR:
      return std::make_unique<SimulatorSource>(nSimulator, nStopper);
    case SourceSpec::STDIN:
      return std::make_unique<FileSource>("/dev/stdin", nStopper);
    case SourceSpec::FILE:
      return std::make_unique<FileSource>(nSpec.mPath, nStopper);
    case SourceSpec::SERIAL:
      return std::make_unique<SerialSource>(nSpec.mPath, nSpec.mBaud, nStopper);
    case SourceSpec::TCP:
      return std::make_unique<TcpSource>(nSpec, nStopper);
    case SourceSpec::NONE:
      break;
  }
  return nullptr;
}

}  // namespace drive
