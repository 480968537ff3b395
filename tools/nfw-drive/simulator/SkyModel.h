#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "VehicleModel.h"

namespace drive {

enum SatelliteSystem { SYSTEM_GPS, SYSTEM_GLONASS, SYSTEM_GALILEO, SYSTEM_NUM };
const unsigned int ALL_SYSTEMS = (1u << SYSTEM_NUM) - 1;

/// One satellite above the horizon.
struct Satellite {
  unsigned int mNumber;     ///< as in sentences: GPS 1 to 32, GLONASS 65 to 96, Galileo 301 to 336
  unsigned int mElevation;  ///< degrees
  unsigned int mAzimuth;    ///< degrees
  unsigned int mSnr;        ///< dB-Hz, 0: not tracked
  bool mUsed;               ///< in the position
};

/// Dilutions of precision.
struct Dops {
  double mPosition;
  double mHorizontal;
  double mVertical;
  double mTime;
};

/// The sky over the vehicle: constellations on circular orbits above a turning earth, and what their geometry gives.
class SkyModel {
 public:
  static constexpr unsigned int MAX_USED = 12;  ///< per constellation: the places of a GSA sentence

  /// @param nSystems a bit per SatelliteSystem
  SkyModel(uint64_t nSeed, unsigned int nSystems) : mRandom(nSeed), mSystems(nSystems) {}

  /// @param nTimeMs since 1970, UTC
  void update(int64_t nTimeMs, const VehicleState& nVehicle);

  bool has(SatelliteSystem nSystem) const { return (mSystems >> nSystem & 1u) != 0; }
  const std::vector<Satellite>& inView(SatelliteSystem nSystem) const { return mInView[nSystem]; }
  unsigned int usedCount() const;
  const Dops& getDops() const { return mDops; }

 private:
  void updateSystem(SatelliteSystem nSystem, double nSeconds, const VehicleState& nVehicle);
  unsigned int snr(double nElevation);

  tool::Random mRandom;
  const unsigned int mSystems;
  std::array<std::vector<Satellite>, SYSTEM_NUM> mInView;
  Dops mDops = {};
};

}  // namespace drive
