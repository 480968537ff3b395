#include "SkyModel.h"

#include <algorithm>
#include <cmath>

#include "Geometry.h"

namespace drive {

namespace {

const Constellation CONSTELLATIONS[SYSTEM_NUM] = {
    {1, 6, 5, 26560e3, 55.0, 25.0},
    {65, 3, 8, 25510e3, 64.8, 15.0},
    {301, 3, 8, 29600e3, 56.0, 15.0},
};
const double USED_ABOVE = 10.0;    // degrees
const double TRACKED_ABOVE = 3.0;  // degrees

unsigned int whole(double nValue) { return static_cast<unsigned int>(std::lround(nValue)); }

}  // namespace

void SkyModel::update(int64_t nTimeMs, const VehicleState& nVehicle) {
  // Orbits repeat within days: counting from a day near the drive keeps the angles exact.
  const double lSeconds = static_cast<double>(nTimeMs % (100 * 86400000ll)) / 1000.0;
  DopSum lSum;
  for (int s = 0; s < SYSTEM_NUM; ++s) {
    mInView[static_cast<size_t>(s)].clear();
    if (has(static_cast<SatelliteSystem>(s))) updateSystem(static_cast<SatelliteSystem>(s), lSeconds, nVehicle);
    for (const Satellite& lSatellite : mInView[static_cast<size_t>(s)]) {
      if (lSatellite.mUsed) {
        lSum.add({static_cast<double>(lSatellite.mElevation), static_cast<double>(lSatellite.mAzimuth)});
      }
    }
  }
  mDops = lSum.result();
}

void SkyModel::updateSystem(SatelliteSystem nSystem, double nSeconds, const VehicleState& nVehicle) {
  const Constellation& lConstellation = CONSTELLATIONS[nSystem];
  unsigned int lUsed = 0;
  for (unsigned int i = 0; i < lConstellation.mPlanes * lConstellation.mPerPlane; ++i) {
    const SkyDirection lDirection = directionOf(lConstellation, i, nSeconds, nVehicle);
    if (lDirection.mElevation < 1.0) continue;
    const bool lIsUsed = lDirection.mElevation >= USED_ABOVE && lUsed < MAX_USED;
    if (lIsUsed) ++lUsed;
    mInView[nSystem].push_back({lConstellation.mFirstNumber + i, whole(lDirection.mElevation),
                                whole(lDirection.mAzimuth) % 360, snr(lDirection.mElevation), lIsUsed});
  }
}

unsigned int SkyModel::snr(double nElevation) {
  if (nElevation < TRACKED_ABOVE) return 0;
  return whole(24.0 + 24.0 * std::sin(toRadians(nElevation)) + mRandom.between(-2.0, 2.0));
}

unsigned int SkyModel::usedCount() const {
  unsigned int lCount = 0;
  for (const auto& lSatellites : mInView) {
    lCount += static_cast<unsigned int>(
        std::count_if(lSatellites.begin(), lSatellites.end(), [](const Satellite& n) { return n.mUsed; }));
  }
  return lCount;
}

}  // namespace drive
