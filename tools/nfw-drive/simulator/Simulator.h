#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SentenceWriter.h"
#include "SkyModel.h"
#include "VehicleModel.h"

namespace drive {

/// What a simulated drive is. It is the same for the same values, wherever and whenever it runs: it has its own time.
struct SimulatorOptions {
  /// A stretch of the drive under a roof, in milliseconds from the start of the drive; the end does not belong to it.
  /// The receiver keeps its time and knows which satellites are up, but has no position and hears nothing.
  struct Tunnel {
    int64_t mFromMs, mUntilMs;
  };

  uint64_t mSeed = 1;
  unsigned int mRateHz = 1;          ///< epochs per second, 1 to 10
  int64_t mStartMs = 1769846400000;  ///< since 1970, UTC: 2026-01-31 08:00:00
  unsigned int mSystems = ALL_SYSTEMS;
  std::vector<Tunnel> mTunnels;  ///< the drive itself is the same with and without them
};

/// A drive, epoch by epoch, as the sentences of a receiver: in every epoch RMC, VTG, GGA, GSA, GLL and "$PUBX,00", at
/// each whole second also GSV and ZDA. One thread at a time.
///
/// @code
/// drive::Simulator lSimulator({});
/// std::string lText;
/// lSimulator.writeEpoch(&lText);  // lines end in CR LF
/// @endcode
class Simulator {
 public:
  explicit Simulator(const SimulatorOptions& nOptions);

  /// Replaces the text by the sentences of the next epoch.
  void writeEpoch(std::string* npText);

  /// How it truly was at the epoch written last; before the first one, how it starts.
  const VehicleState& getVehicle() const { return mVehicle.getState(); }

 private:
  Epoch currentEpoch() const;
  bool isInTunnel(int64_t nElapsedMs) const;

  const SimulatorOptions mOptions;
  VehicleModel mVehicle;
  SkyModel mSky;
  uint64_t mEpochNo = 0;  // of the next one
};

}  // namespace drive
