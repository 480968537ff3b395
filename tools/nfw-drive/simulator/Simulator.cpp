#include "Simulator.h"

#include <algorithm>

namespace drive {

Simulator::Simulator(const SimulatorOptions& nOptions)
    : mOptions(nOptions), mVehicle(nOptions.mSeed), mSky(nOptions.mSeed ^ 0x5A5A5A5Au, nOptions.mSystems) {}

void Simulator::writeEpoch(std::string* npText) {
  if (mEpochNo > 0) mVehicle.step(1.0 / mOptions.mRateHz);
  const Epoch lEpoch = currentEpoch();
  const bool lIsWholeSecond = mEpochNo % mOptions.mRateHz == 0;
  if (lIsWholeSecond) mSky.update(lEpoch.mTimeMs, lEpoch.mVehicle);
  npText->clear();
  SentenceWriter lWriter(lEpoch, npText);
  lWriter.writeRmc();
  lWriter.writeVtg();
  lWriter.writeGga();
  lWriter.writeGsa();
  if (lIsWholeSecond) lWriter.writeGsv();
  lWriter.writeGll();
  if (lIsWholeSecond) lWriter.writeZda();
  lWriter.writePubx();
  ++mEpochNo;
}

Epoch Simulator::currentEpoch() const {
  const int64_t lElapsed = static_cast<int64_t>(mEpochNo * 1000 / mOptions.mRateHz);
  return {mOptions.mStartMs + lElapsed, mVehicle.getState(), mSky, isInTunnel(lElapsed)};
}

bool Simulator::isInTunnel(int64_t nElapsedMs) const {
  const auto& lTunnels = mOptions.mTunnels;
  return std::any_of(lTunnels.begin(), lTunnels.end(), [nElapsedMs](const SimulatorOptions::Tunnel& nTunnel) {
    return nElapsedMs >= nTunnel.mFromMs && nElapsedMs < nTunnel.mUntilMs;
  });
}

}  // namespace drive
