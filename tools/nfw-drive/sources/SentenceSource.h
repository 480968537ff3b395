#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "DeadReckoner.h"
#include "Simulator.h"
#include "SourceAddress.h"
#include "Stopper.h"

namespace drive {

/// Where the bytes of sentences come from. One thread uses it; a stop requested by any thread ends its waits.
class SentenceSource {
 public:
  enum OpenResult {
    OPENED,
    OPEN_LATER,  ///< not there yet: trying again makes sense
    OPEN_FAILED,
  };
  static constexpr int END = 0;
  static constexpr int BROKEN = -1;
  static constexpr int STOPPED = -2;

  virtual ~SentenceSource() = default;

  /// Opens it, or opens it again. When it cannot, the reason is one phrase without a name.
  virtual OpenResult open(std::string* npReason) = 0;

  /// Waits for bytes. Their number, or END, BROKEN with the reason, STOPPED.
  virtual int read(char* npBuffer, size_t nSize, std::string* npReason) = 0;

  /// How the vehicle moves, for a source that knows: of the sentences read last. Null otherwise.
  virtual const MotionSensor* motion() const { return nullptr; }

  /// Datagrams that came and found no room, as far as the system tells.
  virtual uint64_t lost() const { return 0; }
};

/// @param nStopper not owned, outlives the source
std::unique_ptr<SentenceSource> createSource(const SourceAddress& nAddress, const SimulatorOptions& nSimulator,
                                             tool::Stopper& nStopper);

}  // namespace drive
