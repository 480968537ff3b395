#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "SkyModel.h"
#include "VehicleModel.h"

namespace drive {

/// What the sentences of one epoch tell.
struct Epoch {
  int64_t mTimeMs;  ///< since 1970, UTC
  const VehicleState& mVehicle;
  const SkyModel& mSky;
  bool mIsSkyHidden;  ///< nothing is received: no position, and of satellites only what the almanac tells
};

/// Writes sentences with checksum and CR LF onto a text.
class SentenceWriter {
 public:
  SentenceWriter(const Epoch& nEpoch, std::string* npText);

  void writeRmc();
  void writeVtg();
  void writeGga();
  void writeGsa();  ///< one sentence per constellation
  void writeGsv();  ///< one group per constellation
  void writeGll();
  void writeZda();
  void writePubx();

 private:
  void writeGsa(SatelliteSystem nSystem);
  void writeGsv(SatelliteSystem nSystem);
  void writeSatellite(const Satellite& nSatellite);
  template <class... Args>
  void append(std::string_view nFormat, const Args&... nArgs);
  void appendPosition();
  void appendDate();
  void begin(std::string_view nType);
  void end();

  const Epoch& mEpoch;
  const bool mHasFix;
  const Dops mDops;
  std::string* const mpText;
  std::string_view mTalker;  // of the sentences that tell of all constellations together
  size_t mStart = 0;         // of the sentence under way
  char mTime[16];
};

}  // namespace drive
